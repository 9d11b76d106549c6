// What clients have of a server: exports, claims, sessions, and what they have open.
import { h, keyed, setText, table } from "./dom.js";
import { count, volume } from "./format.js";

const kMost = 50;

// A table with a heading above it, and a text instead of it while there is nothing.
class Panel {
    constructor(title, caption, columns, emptyText, keyOf, texts) {
        this.columns = columns;
        this.keyOf = keyOf;
        this.texts = texts;
        this.count = h("span", { class: "muted numbers" });
        this.table = table(caption, columns, "even");
        this.emptyText = emptyText;
        this.more = h("p", { class: "muted" });
        this.element = h("section", { class: "panel" },
            h("div", { class: "title" }, h("h4", {}, title), this.count), this.table.element, this.more);
    }

    // `total` may be more than are told.
    update(records, total = records.length) {
        setText(this.count, total === 0 ? this.emptyText : count(total));
        this.table.element.hidden = records.length === 0;
        this.more.hidden = total <= kMost;
        setText(this.more, "And " + count(total - kMost) + " more.");
        keyed(this.table.body, records.slice(0, kMost), this.keyOf, () => this.table.row(this.columns.map(() => "")),
            (row, record) => this.texts(record).forEach((text, index) => setText(row.cells[index], text)));
    }
}

export class Clients {
    constructor(prefix) {
        this.exports = new Panel("Exports", "Exports of " + prefix,
            [{ label: "What", class: "name" }, { label: "Volume", class: "name" }, { label: "To", class: "name" }],
            "No exports.", (entry) => JSON.stringify(entry),
            (entry) => [entry.lsu + (entry.snapshot === null ? "" : " / " + entry.snapshot), volume(entry.volume),
                entry.hosts.join(", ")]);
        this.claims = new Panel("Claims", "Claims of " + prefix,
            [{ label: "Volume", class: "name" }, { label: "Session", class: "number" }],
            "No claims.", (claim) => JSON.stringify(claim), (claim) => [volume(claim.volume), claim.session]);
        this.sessions = new Panel("Sessions", "Sessions of " + prefix,
            [{ label: "Number", class: "number" }, { label: "Opened as", class: "name" }],
            "No sessions.", (session) => session.number, (session) => [session.number, session.name]);
        this.open = new Panel("Open lists", "Open lists of " + prefix,
            [{ label: "Kind" }, { label: "Session", class: "number" }, { label: "Read", class: "number" }],
            "Nothing is open.", (entry) => [entry.kind, entry.session, entry.entries].join(" "),
            (entry) => [entry.kind, entry.session ?? "–",
                entry.entries === null ? "–" : (entry.read ?? 0) + " of " + entry.entries]);
        this.element = h("div", { class: "clients" }, this.exports.element, this.claims.element,
            this.sessions.element, this.open.element);
    }

    update(server) {
        this.exports.update(server.exports);
        this.claims.update(server.claims);
        this.sessions.update(server.sessions, server.sessionCount);
        this.open.update(server.open, server.openCount);
    }
}
