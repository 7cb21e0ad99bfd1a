/* SPDX-FileCopyrightText: 2026 The Brevant developers
   SPDX-License-Identifier: GPL-3.0-or-later */

/**
 * The cakes to order, as a module for the browsers of today: private fields, optional chaining, template literals
 * and await at the top level. The page works without it, as a plain list.
 */
const MOST_GUESTS = 60;
const euros = new Intl.NumberFormat("de-DE", { style: "currency", currency: "EUR" });

/** What has been chosen, kept until the order is sent. */
export class Selection extends EventTarget {
    #cakes = new Map();
    static #key = "suessmilch.torten";

    constructor(storage = globalThis.localStorage) {
        super();
        this.storage = storage;
        try {
            const stored = JSON.parse(storage?.getItem(Selection.#key) ?? "[]");
            this.#cakes = new Map(stored);
        } catch {
            // A forbidden storage, or something else in it: nothing has been chosen.
        }
    }

    /** Counts whole cents, so that 3 × 32,90 € really is 98,70 €. */
    get cents() {
        return [...this.#cakes.values()].reduce((sum, { cents, count }) => sum + cents * count, 0);
    }

    add(name, { cents, guests = 12, ...rest }) {
        const before = this.#cakes.get(name)?.count ?? 0;
        if ((before + 1) * guests > MOST_GUESTS) {
            return false;
        }
        this.#cakes.set(name, { ...rest, cents, guests, count: before + 1 });
        this.#save();
        return true;
    }

    clear() {
        this.#cakes.clear();
        this.#save();
    }

    #save() {
        this.storage?.setItem(Selection.#key, JSON.stringify([...this.#cakes]));
        this.dispatchEvent(new Event("change"));
    }
}

/** "Mohntorte (12 Personen), 32,90 €" */
export function parseCake(text) {
    const form = /^(?<name>.+?) \((?<guests>\d+) Personen\), (?<whole>\d+),(?<rest>\d\d) €$/u;
    const { name, guests, whole, rest } = form.exec(text.trim())?.groups ?? {};
    return name && { name, guests: Number(guests), cents: Number(whole) * 100 + Number(rest) };
}

function show(selection, page) {
    const sum = page.querySelector("[data-sum]");
    if (sum) {
        sum.textContent = selection.cents > 0 ? `Zusammen: ${euros.format(selection.cents / 100)}` : "Noch nichts gewählt.";
    }
}

export async function start(page) {
    const selection = new Selection();
    const dialog = page.querySelector("dialog");
    const template = page.querySelector("template");
    for (const entry of page.querySelectorAll(".torten > li:not(.ausverkauft)")) {
        const cake = parseCake(entry.textContent);
        if (!cake) {
            continue;
        }
        const { name, ...details } = cake;
        const choice = template.content.cloneNode(true);
        choice.querySelector("button").addEventListener("click", () => {
            if (!selection.add(name, details)) {
                dialog?.showModal();
            }
        });
        entry.append(choice);
    }
    page.querySelector("[data-clear]")?.addEventListener("click", () => selection.clear());
    selection.addEventListener("change", () => show(selection, page));
    show(selection, page);
    await page.fonts?.ready;
    page.documentElement.classList.add("bereit");
}

if (globalThis.document) {
    await start(document);
}
