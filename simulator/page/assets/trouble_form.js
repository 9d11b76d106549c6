// The form that sets a trouble. It has the fields that the kind needs, and says beside each what is wrong with it.
import { fill, h, setText } from "./dom.js";
import { choiceOf, kKnownCodes, kTroubleKinds } from "./trouble_kinds.js";

const kMostTimes = 4294967295;

// A labelled field with a place for what is wrong.
class Field {
    constructor({ name, label, start = "", wrong, list, hint = "" }) {
        this.name = name;
        this.wrong = wrong;
        const id = "trouble-" + name;
        this.error = h("span", { id: id + "-error", class: "error" });
        this.hint = h("span", { id: id + "-hint", class: "hint" }, hint);
        this.input = h("input", { id, list, value: start, autocomplete: "off", spellcheck: "false",
            inputmode: name === "operation" ? null : "decimal", "aria-describedby": id + "-error " + id + "-hint" });
        this.element = h("div", { class: "field" }, h("label", { for: id }, label), this.input, this.error, this.hint);
        this.input.addEventListener("input", () => this.tell(""));
    }

    get text() {
        return this.input.value.trim();
    }

    tell(text) {
        setText(this.error, text === "" ? "" : "✕ " + text);
        if (text === "") this.input.removeAttribute("aria-invalid");
        else this.input.setAttribute("aria-invalid", "true");
    }

    check() {
        const text = this.wrong(this.text);
        this.tell(text);
        return text === "";
    }
}

export class TroubleForm {
    // `set(trouble)` is a promise.
    constructor(set) {
        this.set = set;
        this.operations = new Map();
        this.names = h("datalist", { id: "known-operations" });
        this.operation = new Field({ name: "operation", label: "Operation", list: "known-operations",
            hint: "Type a part of its name to search.", wrong: (text) => this.wrongOperation(text) });
        this.kind = h("select", { id: "trouble-kind", "aria-describedby": "trouble-kind-text" },
            kTroubleKinds.map((kind) => h("option", { value: choiceOf(kind) }, kind.label)));
        this.kindText = h("span", { id: "trouble-kind-text", class: "hint" });
        this.places = h("div", { class: "fields" });
        this.fields = new Map();
        this.times = h("input", { type: "radio", name: "trouble-duration", id: "trouble-times", checked: true });
        this.always = h("input", { type: "radio", name: "trouble-duration", id: "trouble-always" });
        this.count = new Field({ name: "count", label: "Number of times", start: "1",
            wrong: (text) => /^\d+$/.test(text) && Number(text) >= 1 && Number(text) <= kMostTimes ? "" : "A whole number from 1 on." });
        this.refused = h("p", { class: "error", role: "alert" });
        this.element = h("form", { class: "trouble-form", "aria-labelledby": "trouble-form-title", novalidate: true },
            h("h3", { id: "trouble-form-title" }, "Set a trouble"),
            this.operation.element, this.names,
            h("datalist", { id: "known-codes" }, kKnownCodes.map(([code, name]) => h("option", { value: code }, name))),
            h("div", { class: "field" }, h("label", { for: "trouble-kind" }, "Kind"), this.kind, this.kindText),
            this.places,
            h("fieldset", {}, h("legend", {}, "How often"),
                h("span", { class: "choice" }, this.times, h("label", { for: "trouble-times" }, "A number of times")),
                h("span", { class: "choice" }, this.always, h("label", { for: "trouble-always" }, "Always")),
                this.count.element),
            h("button", { type: "submit", class: "primary" }, "Set"), this.refused);
        this.operation.input.addEventListener("input", () => this.tellOperation());
        this.kind.addEventListener("change", () => this.showFields());
        for (const choice of [this.times, this.always]) choice.addEventListener("change", () => this.showFields());
        this.element.addEventListener("submit", (event) => {
            event.preventDefault();
            this.submit();
        });
        this.showFields();
    }

    nameOperations(operations) {
        this.operations = new Map(operations.map((operation) => [operation.name, operation.text]));
        fill(this.names, operations.map((operation) => h("option", { value: operation.name }, operation.text)));
        this.tellOperation(); // one may be there already
    }

    tellOperation() {
        setText(this.operation.hint, this.operations.get(this.operation.text) || "Type a part of its name to search.");
    }

    wrongOperation(text) {
        if (text === "") return "An operation is needed.";
        return this.operations.size === 0 || this.operations.has(text) ? "" : "There is no such operation.";
    }

    chosen() {
        return kTroubleKinds.find((kind) => choiceOf(kind) === this.kind.value);
    }

    showFields() {
        const { text, fields } = this.chosen();
        setText(this.kindText, text);
        this.shown = fields.map((field) => {
            const key = field.name + field.label;
            if (!this.fields.has(key)) this.fields.set(key, new Field(field));
            return this.fields.get(key);
        });
        fill(this.places, this.shown.map((field) => field.element));
        this.count.element.hidden = this.always.checked;
    }

    async submit() {
        setText(this.refused, "");
        const checked = [this.operation, ...this.shown, ...(this.always.checked ? [] : [this.count])];
        const wrong = checked.filter((field) => !field.check());
        if (wrong.length > 0) {
            wrong[0].input.focus();
            return;
        }
        const trouble = { operation: this.operation.text, kind: this.chosen().kind };
        for (const field of this.shown) trouble[field.name] = Number(field.text);
        if (!this.always.checked) trouble.count = Number(this.count.text);
        try {
            await this.set(trouble);
        } catch (refusal) {
            setText(this.refused, "✕ " + refusal.message);
        }
    }
}
