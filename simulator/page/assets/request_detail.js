// One request and its reply, side by side.
import { getJson, Refusal } from "./api.js";
import { fill, h, setText } from "./dom.js";
import { bytes, clock, day, milliseconds } from "./format.js";
import { coloured } from "./xml.js";

export class RequestDetail {
    constructor(closed) {
        this.heading = h("h3", { tabindex: "-1" });
        this.facts = h("dl", { class: "facts" });
        this.fields = h("dl", { class: "pairs" });
        this.head = h("details", {}, h("summary", {}, "Head of the request"), this.fields);
        this.sides = h("div", { class: "sides" });
        this.element = h("section", { class: "detail-panel", "aria-label": "Chosen request", hidden: true },
            h("div", { class: "title" }, this.heading,
                h("button", { type: "button", class: "small", click: () => this.close() }, "Close")),
            this.facts, this.head, this.sides);
        this.closed = closed;
        this.element.addEventListener("keydown", (event) => {
            if (event.key === "Escape") this.close();
        });
    }

    // `known` is what the list tells of it. In a storm of requests its texts may be gone before anybody can ask.
    async show(known) {
        const asked = await getJson("/api/requests/" + known.number).catch((trouble) => {
            if (trouble instanceof Refusal) return null;
            throw trouble;
        });
        this.tell(asked ?? { ...known, method: "", path: "", fields: [] });
        if (asked === null) {
            fill(this.sides, h("p", { class: "empty" }, "What was asked and answered isn't kept any more."));
        } else {
            fill(this.sides, this.side("Request", asked.request, asked.requestBytes, asked.requestIsCut),
                this.side("Reply", asked.reply, asked.replyBytes, asked.replyIsCut));
        }
        this.element.hidden = false;
        this.heading.focus();
    }

    tell(entry) {
        const time = new Date(entry.time);
        setText(this.heading, "Request " + entry.number + ": " + entry.operation);
        const facts = [
            ["Time", day(time) + " " + clock(time, true)],
            ["Client", entry.client + (entry.tls ? ", TLS" : ", plain")],
            ["Asked", (entry.method + " " + entry.path).trim()],
            ["HTTP status", entry.status === 0 ? "none was sent" : String(entry.status)],
            ["Outcome", entry.outcome],
            ["Trouble", entry.trouble],
            ["Took", milliseconds(entry.milliseconds) + (entry.milliseconds < 10000 ? " ms" : "")],
        ].filter(([, text]) => text !== "");
        const pair = (name, text) => h("div", {}, h("dt", {}, name), h("dd", { class: "name" }, text));
        fill(this.facts, facts.map(([name, text]) => pair(name, text)));
        fill(this.fields, entry.fields.map(({ name, value }) => pair(name, value)));
        this.head.hidden = entry.fields.length === 0;
    }

    side(name, text, size, isCut) {
        const id = "xml-" + name.toLowerCase();
        return h("section", { class: "side", "aria-labelledby": id },
            h("div", { class: "title" }, h("h4", { id }, name), h("span", { class: "muted numbers" }, bytes(size))),
            text === "" ? h("p", { class: "empty" }, "Empty.")
                        : h("pre", { class: "xml", tabindex: "0", role: "region", "aria-label": name + " as XML" }, coloured(text)),
            isCut && h("p", { class: "muted" }, "The rest isn't kept."));
    }

    hide() {
        this.element.hidden = true;
        fill(this.sides);
    }

    close() {
        this.hide();
        this.closed();
    }
}
