// The view of what differs between two snapshots of an LSU, which are chosen on its time line.
import { getJson, Refusal } from "./api.js";
import { changeTree, summary } from "./change_tree.js";
import { fill, forgetKeyed, h, keyed, setText } from "./dom.js";
import { count, counted } from "./format.js";
import { readFragment } from "./links.js";
import { loadState } from "./state.js";
import { TimeLine } from "./timeline.js";

const kMost = 5000;
const kNothing = ""; // to compare with: then all is created

export class ChangesView {
    constructor() {
        this.name = "changes";
        this.title = "Change lists";
        this.watchesTime = true;
        this.lsu = h("select", { id: "changes-lsu" });
        this.chosen = { server: null, lsu: null, base: null, later: null };
        this.line = h("div", {});
        this.from = h("input", { type: "radio", name: "changes-base", id: "changes-nothing", value: kNothing });
        this.nothing = h("p", { class: "choice" }, this.from,
            h("label", { for: "changes-nothing" }, "From nothing: list all that the later snapshot holds"));
        this.result = h("section", { class: "result", "aria-labelledby": "changes-result", "aria-live": "polite" });
        this.element = h("section", { "aria-labelledby": "changes-title" },
            h("h2", { id: "changes-title" }, "Change lists"),
            h("div", { class: "toolbar" }, h("label", { for: "changes-lsu" }, "LSU"), this.lsu),
            h("div", { class: "panel" }, this.line, this.nothing), this.result);
        this.controls = 0;
    }

    start(again) {
        this.again = again;
        this.lsu.addEventListener("change", () => {
            const [server, lsu] = JSON.parse(this.lsu.value);
            this.chosen = { server, lsu, base: null, later: null };
            again();
        });
        this.element.addEventListener("change", (event) => {
            if (event.target.name === "changes-base") this.chosen.base = event.target.value;
            else if (event.target.name === "changes-later") this.chosen.later = event.target.value;
            else return;
            this.compare().catch(again.failed);
        });
    }

    // Called when the address names this view.
    enter() {
        const { query } = readFragment();
        if (!query.has("lsu")) return;
        const asked = { server: query.get("server"), lsu: query.get("lsu"), base: query.get("base"), later: query.get("later") };
        if (JSON.stringify(asked) === JSON.stringify(this.chosen)) return;
        this.chosen = asked;
        this.shown = null;
    }

    async refresh() {
        const state = await loadState();
        const places = state.servers.flatMap((server) => server.lsus.map((lsu) => ({ server: server.prefix, lsu })));
        keyed(this.lsu, places.map(({ server, lsu }) => [server, lsu.name]), JSON.stringify,
            (place) => h("option", { value: JSON.stringify(place) }, place.join(" / ")));
        const place = places.find(({ server, lsu }) => server === this.chosen.server && lsu.name === this.chosen.lsu) ??
            places.find(({ lsu }) => lsu.snapshots.length > 1) ?? places[0];
        if (!place) {
            fill(this.line, h("p", { class: "empty" }, "There are no LSUs."));
            return;
        }
        this.lsu.value = JSON.stringify([place.server, place.lsu.name]);
        this.choose(place.server, place.lsu);
        await this.compare();
    }

    // Two that are next to each other are chosen ahead, the newest.
    choose(server, lsu) {
        const names = lsu.snapshots.map((snapshot) => snapshot.name);
        const isSame = this.chosen.server === server && this.chosen.lsu === lsu.name;
        const base = isSame ? this.chosen.base : null;
        const later = isSame ? this.chosen.later : null;
        this.chosen = { server, lsu: lsu.name,
            base: base === kNothing || names.includes(base) ? base : names.at(-2) ?? kNothing,
            later: names.includes(later) ? later : names.at(-1) ?? null };
        const key = JSON.stringify([server, lsu.name]);
        if (this.lineOf !== key) {
            this.lineOf = key;
            this.timeLine = new TimeLine("Snapshots of " + lsu.name + ", oldest first", (snapshot) => this.radios(snapshot));
            fill(this.line, this.timeLine.element);
        }
        this.timeLine.update(lsu.snapshots);
        this.snapshots = lsu.snapshots;
        this.nothing.hidden = names.length === 0;
        for (const radio of this.element.querySelectorAll("input[type=radio]")) {
            radio.checked = radio.value === (radio.name === "changes-base" ? this.chosen.base : this.chosen.later);
        }
    }

    radios(snapshot) {
        const radio = (name, word) => {
            this.controls += 1;
            const id = name + "-" + this.controls;
            return h("span", { class: "choice" }, h("input", { type: "radio", name, id, value: snapshot.name }),
                h("label", { for: id }, word, h("span", { class: "unseen" }, " " + snapshot.name)));
        };
        return h("div", { class: "ends" }, radio("changes-base", "From"), radio("changes-later", "To"));
    }

    async compare() {
        const { server, lsu, base, later } = this.chosen;
        this.mark(base, later);
        if (later === null) {
            fill(this.result, h("p", { class: "empty" }, "This LSU has no snapshots to compare."));
            this.shown = null;
            return;
        }
        const query = { server, lsu, base, later };
        if (location.hash.startsWith("#changes")) history.replaceState(null, "", "#changes?" + new URLSearchParams(query));
        const key = JSON.stringify([query, this.snapshots]);
        if (this.shown === key) return;
        this.shown = key;
        try {
            const answer = await getJson("/api/differences", { ...query, limit: kMost });
            if (this.shown === key) this.show(query, answer);
        } catch (trouble) {
            if (!(trouble instanceof Refusal)) {
                this.shown = null;
                throw trouble;
            }
            fill(this.result, h("p", { class: "error" }, "✕ " + trouble.message));
        }
    }

    mark(base, later) {
        const entries = [...this.line.querySelectorAll("li")];
        const place = (name, end) => entries.findIndex((entry) =>
            [...entry.querySelectorAll("input")].some((input) => input.name === end && input.value === name));
        const [first, last] = [place(base, "changes-base"), place(later, "changes-later")].sort((one, other) => one - other);
        entries.forEach((entry, index) => {
            entry.classList.toggle("is-chosen", index === first || index === last);
            entry.classList.toggle("is-between", first >= 0 && index >= first && index < last);
        });
    }

    show({ base, later }, { changes, total, isCut }) {
        fill(this.result,
            h("div", { class: "title" },
                h("h3", { id: "changes-result", class: "name" }, (base === kNothing ? "All of " : base + " → ") + later),
                h("span", { class: "muted numbers" }, total === 0 ? "" : summary(changes))),
            isCut && h("p", {}, "The first " + count(changes.length) + " of " + counted(total, "change", "changes") + "."),
            changes.length === 0 ? h("p", { class: "empty" }, "Nothing differs.") : changeTree(changes));
    }

    reset() {
        this.shown = null;
        this.lineOf = null;
        forgetKeyed(this.lsu);
        fill(this.line);
        fill(this.result);
    }
}
