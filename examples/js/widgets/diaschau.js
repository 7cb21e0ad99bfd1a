/* SPDX-FileCopyrightText: 2026 The Brevant developers
   SPDX-License-Identifier: GPL-3.0-or-later */

/**
 * A quiet slide show: the next slide every few seconds, none while the mouse
 * or the keyboard focus is on it, none for people who asked for less motion.
 *
 * @param {Element} frame    the element around the slides
 * @param {Object}  options  pause: milliseconds between two slides (7000)
 */
function Diaschau(frame, options) {
    "use strict";

    this.frame = frame;
    this.slides = frame.querySelectorAll(".dia");
    this.pause = options && options.pause ? options.pause : 7000;
    this.current = 0;
    this.timer = null;
}

/** Shows the slide with this number; numbers beyond the ends wrap around. */
Diaschau.prototype.show = function (number) {
    "use strict";

    var count = this.slides.length;
    var index;

    if (count === 0) {
        return;
    }
    this.current = ((number % count) + count) % count;
    for (index = 0; index < count; index += 1) {
        if (index === this.current) {
            this.slides[index].classList.add("sichtbar");
            this.slides[index].removeAttribute("aria-hidden");
        } else {
            this.slides[index].classList.remove("sichtbar");
            this.slides[index].setAttribute("aria-hidden", "true");
        }
    }
};

Diaschau.prototype.start = function () {
    "use strict";

    var self = this;
    if (self.timer !== null || self.slides.length < 2) {
        return;
    }
    self.timer = window.setInterval(function () {
        self.show(self.current + 1);
    }, self.pause);
};

Diaschau.prototype.stop = function () {
    "use strict";

    window.clearInterval(this.timer);
    this.timer = null;
};

document.addEventListener("DOMContentLoaded", function () {
    "use strict";

    var quiet = window.matchMedia && window.matchMedia("(prefers-reduced-motion: reduce)").matches;
    var frames = document.querySelectorAll(".diaschau");

    Array.prototype.forEach.call(frames, function (frame) {
        var show = new Diaschau(frame, { pause: 8000 });

        show.show(0);
        if (quiet) {
            return;
        }
        frame.addEventListener("mouseenter", function () { show.stop(); });
        frame.addEventListener("mouseleave", function () { show.start(); });
        frame.addEventListener("focusin", function () { show.stop(); });
        frame.addEventListener("focusout", function () { show.start(); });
        show.start();
    });
});
