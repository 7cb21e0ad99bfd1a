/* SPDX-FileCopyrightText: 2026 The Brevant developers
   SPDX-License-Identifier: GPL-3.0-or-later */

/**
 * Says whether the shop is open now, and when it opens or closes next.
 * Fills every element that has the attribute data-geoeffnet.
 */
(function (window, document) {
    "use strict";

    // Minutes since midnight, [open, close], Sunday first. Monday is the baker's day of rest.
    var hours = [
        [7 * 60 + 30, 11 * 60],
        null,
        [6 * 60, 18 * 60 + 30],
        [6 * 60, 18 * 60 + 30],
        [6 * 60, 18 * 60 + 30],
        [6 * 60, 18 * 60 + 30],
        [6 * 60, 13 * 60]
    ];

    var dayNames = [
        "Sonntag", "Montag", "Dienstag", "Mittwoch",
        "Donnerstag", "Freitag", "Samstag"
    ];

    /** 390 becomes "6:30". */
    function timeText(minutes) {
        var hour = Math.floor(minutes / 60);
        var minute = minutes % 60;
        return hour + ":" + (minute < 10 ? "0" : "") + minute;
    }

    /** The next day with opening hours, counted from the given weekday. */
    function nextOpening(weekday) {
        var step, candidate;
        for (step = 1; step <= 7; step += 1) {
            candidate = (weekday + step) % 7;
            if (hours[candidate]) {
                return {
                    day: step === 1 ? "morgen" : "am " + dayNames[candidate],
                    time: timeText(hours[candidate][0])
                };
            }
        }
        return null;
    }

    function message(now) {
        var weekday = now.getDay();
        var minutes = now.getHours() * 60 + now.getMinutes();
        var today = hours[weekday];
        var next;

        if (today && minutes < today[0]) {
            return "Noch geschlossen. Wir öffnen heute um " + timeText(today[0]) + " Uhr.";
        }
        if (today && minutes < today[1]) {
            return "Jetzt geöffnet, heute bis " + timeText(today[1]) + " Uhr.";
        }
        next = nextOpening(weekday);
        return "Geschlossen. Wir öffnen " + next.day + " um " + next.time + " Uhr.";
    }

    function update() {
        var places = document.querySelectorAll("[data-geoeffnet]");
        var text = message(new Date());
        var index;
        for (index = 0; index < places.length; index += 1) {
            places[index].textContent = text;
        }
    }

    // Other scripts and the tests of this page may ask, too.
    window.oeffnungszeiten = {
        message: message
    };

    document.addEventListener("DOMContentLoaded", function () {
        update();
        window.setInterval(update, 60 * 1000);
    });
}(window, document));
