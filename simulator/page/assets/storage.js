// The view of what is stored: servers, their LSUs, and what clients have of them.
import { forgetKeyed, h, keyed, setText } from "./dom.js";
import { Clients } from "./clients.js";
import { counted, count } from "./format.js";
import { Lsu } from "./lsu.js";
import { loadState } from "./state.js";

class Server {
    constructor(server) {
        this.prefix = server.prefix;
        this.facts = h("p", { class: "muted numbers" });
        this.lsus = h("div", { class: "lsus" });
        this.empty = h("p", { class: "empty" }, "No LSUs.");
        this.clients = new Clients(server.prefix);
        this.element = h("section", { class: "server", "aria-label": "Server " + server.prefix },
            h("div", { class: "title" }, h("h3", { class: "name" }, server.prefix), this.facts),
            this.lsus, this.empty, this.clients.element);
        this.parts = new WeakMap();
    }

    update(server) {
        setText(this.facts, [counted(server.lsus.length, "LSU", "LSUs"),
            count(server.sessionCount ?? server.sessions.length) + " of " + counted(server.maxSessions, "session", "sessions"),
            "capabilities " + (server.capabilities.join(", ") || "none")].join(" · "));
        this.empty.hidden = server.lsus.length > 0;
        keyed(this.lsus, server.lsus, (lsu) => lsu.name, (lsu) => {
            const part = new Lsu(this.prefix, lsu);
            this.parts.set(part.element, part);
            return part.element;
        }, (element, lsu) => this.parts.get(element).update(lsu));
        this.clients.update(server);
    }
}

export class StorageView {
    constructor() {
        this.name = "storage";
        this.title = "Storage";
        this.watchesTime = true;
        this.servers = h("div", { class: "servers" });
        this.parts = new WeakMap();
        this.element = h("section", { "aria-labelledby": "storage-title" },
            h("h2", { id: "storage-title" }, "Storage"), this.servers);
    }

    async refresh() {
        const state = await loadState();
        keyed(this.servers, state.servers, (server) => server.prefix, (server) => {
            const part = new Server(server);
            this.parts.set(part.element, part);
            return part.element;
        }, (element, server) => this.parts.get(element).update(server));
    }

    reset() {
        forgetKeyed(this.servers);
    }
}
