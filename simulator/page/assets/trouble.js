// The view that brings about faults, delays and damaged answers.
import { getJson, postJson, remove } from "./api.js";
import { forgetKeyed, h, keyed, notice, setText, table } from "./dom.js";
import { count } from "./format.js";
import { TroubleForm } from "./trouble_form.js";
import { describe } from "./trouble_kinds.js";

const kColumns = [
    { label: "No.", class: "number" },
    { label: "Operation", class: "name" },
    { label: "What" },
    { label: "Hits", class: "number" },
    { label: "Left", class: "number" },
    { label: "Action" },
];

export class TroubleView {
    constructor() {
        this.name = "trouble";
        this.title = "Trouble";
        this.form = new TroubleForm((trouble) => this.set(trouble));
        this.list = table("Troubles that are set", kColumns);
        this.empty = h("p", { class: "empty" }, "No trouble is set. All operations work as they should.");
        this.endAll = h("button", { type: "button", class: "small" }, "End all");
        this.element = h("section", { "aria-labelledby": "trouble-title" },
            h("h2", { id: "trouble-title" }, "Trouble"),
            h("p", { class: "lead" }, "Have an operation fail, drag or answer badly, and see how a host copes. Several for one "
                + "operation come one after the other; a delay comes ahead of them."),
            h("div", { class: "trouble" }, this.form.element,
                h("section", { class: "panel", "aria-labelledby": "trouble-list-title" },
                    h("div", { class: "title" }, h("h3", { id: "trouble-list-title" }, "What is set"), this.endAll),
                    this.list.element, this.empty)));
    }

    start(again) {
        this.again = again;
        this.endAll.addEventListener("click", () => this.end("/api/faults", "All troubles are ended."));
    }

    async refresh() {
        if (this.form.operations.size === 0) this.form.nameOperations((await getJson("/api/contract")).operations);
        const { faults } = await getJson("/api/faults");
        this.empty.hidden = faults.length > 0;
        this.list.element.hidden = faults.length === 0;
        this.endAll.hidden = faults.length < 2;
        keyed(this.list.body, faults, (fault) => fault.number, (fault) => this.row(fault), (row, fault) => {
            setText(row.cells[3], count(fault.hits));
            setText(row.cells[4], fault.left === null ? "always" : fault.left === 0 ? "used up" : count(fault.left));
        });
    }

    row(fault) {
        const end = h("button", { type: "button", class: "small",
            click: () => this.end("/api/faults/" + fault.number, "Trouble " + fault.number + " is ended.") },
        "End", h("span", { class: "unseen" }, " trouble " + fault.number));
        return this.list.row([String(fault.number), fault.operation, describe(fault), "", "", end]);
    }

    async set(trouble) {
        const made = await postJson("/api/faults", trouble);
        notice("Trouble " + made.number + " is set: " + made.operation + ", " + describe(made) + ".");
        await this.refresh();
    }

    async end(path, text) {
        try {
            await remove(path);
            notice(text);
            await this.refresh();
        } catch (trouble) {
            this.again.failed(trouble);
        }
    }

    reset() {
        forgetKeyed(this.list.body);
    }
}
