// The view of the servers' logs of events.
import { getJson } from "./api.js";
import { fill, forgetKeyed, h, keyed, lines, setText, table } from "./dom.js";
import { count, storageTime } from "./format.js";
import { loadState } from "./state.js";

const kKinds = ["operation", "lsu-info", "server-status", "lsu-status", "image-info", "activity", "server-info",
    "image-replication"];
const kColumns = [
    { label: "No.", class: "number" },
    { label: "Kind", class: "kind" },
    { label: "Event", class: "name wide" },
    { label: "Time", class: "time" },
];
const kAtOnce = 100;
const kMost = 1000;

// What one server has logged.
class ServerEvents {
    constructor(server, again) {
        this.server = server;
        this.limit = kAtOnce;
        this.list = table("Events of " + server + ", newest first", kColumns, "events");
        this.empty = h("p", { class: "empty" });
        this.more = h("button", { type: "button", class: "quiet" }, "Show more",
            h("span", { class: "unseen" }, " events of " + server));
        this.more.addEventListener("click", () => {
            this.limit = Math.min(this.limit + kAtOnce, kMost);
            again();
        });
        this.element = h("section", { class: "panel", "aria-label": "Events of " + server },
            h("h3", { class: "name" }, server), this.list.element, this.empty, this.more);
    }

    async refresh(kind) {
        const { events } = await getJson("/api/events", { server: this.server, kind, limit: this.limit });
        this.more.hidden = events.length < this.limit || this.limit >= kMost;
        this.list.element.hidden = events.length === 0;
        this.empty.hidden = events.length > 0;
        setText(this.empty, kind === "" ? "No events." : "No events of the kind “" + kind + "”.");
        if (this.kind !== kind) forgetKeyed(this.list.body);
        this.kind = kind;
        keyed(this.list.body, events, (event) => event.number, (event) => this.row(event));
    }

    row(event) {
        const details = Object.keys(event.details ?? {}).length === 0 ? null : h("details", {},
            h("summary", {}, "Details", h("span", { class: "unseen" }, " of event " + event.number)),
            h("pre", {}, lines(JSON.stringify(event.details, null, 2))));
        return this.list.row([count(event.number),
            [h("span", { class: "tag" }, event.kind), !event.inline && h("span", { class: "detail-inline" }, " detached")],
            h("div", {}, event.text, details), storageTime(event.time) || "–"]);
    }
}

export class EventsView {
    constructor() {
        this.name = "events";
        this.title = "Events";
        this.watchesTime = true;
        this.server = h("select", { id: "events-server" });
        this.kind = h("select", { id: "events-kind" }, h("option", { value: "" }, "All kinds"),
            kKinds.map((kind) => h("option", { value: kind }, kind)));
        this.logs = h("div", { class: "logs" });
        this.parts = new Map();
        this.element = h("section", { "aria-labelledby": "events-title" },
            h("h2", { id: "events-title" }, "Events"),
            h("div", { class: "toolbar" },
                h("label", { for: "events-server" }, "Server"), this.server,
                h("label", { for: "events-kind" }, "Kind"), this.kind),
            this.logs);
    }

    start(again) {
        this.again = again;
        this.server.addEventListener("change", again);
        this.kind.addEventListener("change", again);
    }

    async refresh() {
        const prefixes = (await loadState()).servers.map((server) => server.prefix);
        keyed(this.server, ["", ...prefixes], (prefix) => prefix,
            (prefix) => h("option", { value: prefix }, prefix === "" ? "All servers" : prefix));
        const asked = this.server.value === "" ? prefixes : [this.server.value];
        for (const prefix of prefixes) {
            if (!this.parts.has(prefix)) this.parts.set(prefix, new ServerEvents(prefix, this.again));
        }
        keyed(this.logs, asked, (prefix) => prefix, (prefix) => this.parts.get(prefix).element);
        await Promise.all(asked.map((prefix) => this.parts.get(prefix).refresh(this.kind.value)));
    }

    reset() {
        this.parts.clear();
        forgetKeyed(this.logs);
        fill(this.server);
        forgetKeyed(this.server);
    }
}
