// How much of an LSU's space is used, as a bar and as text.
import { h, setAttribute, setText } from "./dom.js";
import { bytes, percent } from "./format.js";

export class Space {
    constructor(label) {
        this.label = label;
        this.filled = h("div", {});
        this.bar = h("div", { class: "bar", role: "meter", "aria-label": label, "aria-valuemin": "0", "aria-valuemax": "100" },
            this.filled);
        this.text = h("span", { class: "numbers" });
        this.free = h("span", { class: "muted numbers" });
        this.element = h("div", { class: "space" },
            h("div", { class: "space-line" }, h("span", {}, label), this.text), this.bar, this.free);
    }

    // A used space above the capacity is no mistake of the scenario's: it is there to be tried.
    update(used, capacity) {
        const share = capacity > 0 ? Math.min(used / capacity, 1) : 0;
        this.filled.style.width = 100 * share + "%";
        this.bar.classList.toggle("is-full", share >= 0.9);
        setText(this.text, bytes(used) + " of " + bytes(capacity));
        setAttribute(this.bar, "aria-valuenow", Math.round(100 * share));
        setAttribute(this.bar, "aria-valuetext", this.text.textContent);
        setText(this.free, capacity > used ? percent(used, capacity) + " used, " + bytes(capacity - used) + " free"
                                           : "No space free");
    }
}
