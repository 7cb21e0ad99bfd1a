/* SPDX-FileCopyrightText: 2026 The Brevant developers
   SPDX-License-Identifier: GPL-3.0-or-later */

/**
 * The basket. Kept in the browser until the order is sent; amounts are
 * counted in whole cents, so that 3 × 0,95 € really is 2,85 €.
 */
var warenkorb = (function (window, document) {
    "use strict";

    var STORAGE_KEY = "suessmilch.warenkorb";
    var MOST_PER_ITEM = 50;

    var items = load();

    /** Reads the stored basket; anything that is not one counts as an empty basket. */
    function load() {
        var stored;
        try {
            stored = JSON.parse(window.localStorage.getItem(STORAGE_KEY));
        } catch (error) {
            stored = null;
        }
        return stored && typeof stored === "object" ? stored : {};
    }

    function save() {
        try {
            window.localStorage.setItem(STORAGE_KEY, JSON.stringify(items));
        } catch (error) {
            // A full or forbidden storage: the basket lives as long as the page.
            return false;
        }
        return true;
    }

    /** 285 becomes "2,85 €". */
    function priceText(cents) {
        var euros = Math.floor(cents / 100);
        var rest = cents % 100;
        return euros + "," + (rest < 10 ? "0" : "") + rest + " €";
    }

    function add(name, cents) {
        if (!items[name]) {
            items[name] = { cents: cents, count: 0 };
        }
        if (items[name].count < MOST_PER_ITEM) {
            items[name].count += 1;
        }
        save();
        show();
    }

    function remove(name) {
        if (!items[name]) {
            return;
        }
        items[name].count -= 1;
        if (items[name].count === 0) {
            delete items[name];
        }
        save();
        show();
    }

    function total() {
        return Object.keys(items).reduce(function (sum, name) {
            return sum + items[name].cents * items[name].count;
        }, 0);
    }

    /** One line of the basket, with a button that takes one piece out again. */
    function line(name) {
        var row = document.createElement("li");
        var less = document.createElement("button");
        row.textContent = items[name].count + " × " + name + " ";
        less.type = "button";
        less.textContent = "−";
        less.setAttribute("aria-label", name + ": eins weniger");
        less.addEventListener("click", function () {
            remove(name);
        });
        row.appendChild(less);
        return row;
    }

    function show() {
        var list = document.querySelector(".warenkorb ul");
        var sum = document.querySelector(".warenkorb .summe");
        if (!list || !sum) {
            return;
        }
        list.textContent = "";
        Object.keys(items).sort().forEach(function (name) {
            list.appendChild(line(name));
        });
        sum.textContent = total() > 0 ? "Zusammen " + priceText(total()) : "Noch nichts ausgesucht.";
    }

    document.addEventListener("DOMContentLoaded", function () {
        var buttons = document.querySelectorAll("button[data-ware]");
        Array.prototype.forEach.call(buttons, function (button) {
            button.addEventListener("click", function () {
                add(button.getAttribute("data-ware"), parseInt(button.getAttribute("data-cent"), 10));
            });
        });
        show();
    });

    return {
        add: add,
        remove: remove,
        total: total,
        priceText: priceText
    };
}(window, document));
