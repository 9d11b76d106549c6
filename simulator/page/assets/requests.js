// The view of what was asked and answered, as it comes.
import { remove } from "./api.js";
import { h, keyed, forgetKeyed, notice, setText, table } from "./dom.js";
import { bytes, clock, count, counted, milliseconds } from "./format.js";
import { hasFailed, isOdd, matches, RequestLog } from "./request_log.js";
import { RequestDetail } from "./request_detail.js";

const kColumns = [
    { label: "No.", class: "number" },
    { label: "Time", class: "time" },
    { label: "Client", class: "client" },
    { label: "Operation", class: "operation" },
    { label: "Status", class: "status" },
    { label: "Outcome", class: "name wide" },
    { label: "ms", class: "number took" },
    { label: "Request", class: "number size" },
    { label: "Reply", class: "number size" },
];
const kRowsAtOnce = 200;
const kQuietMilliseconds = 1000;
const kMostToPointAt = 10; // new rows at once, above which none could be hit

export class RequestsView {
    constructor() {
        this.name = "requests";
        this.title = "Requests";
        this.log = new RequestLog();
        this.limit = kRowsAtOnce;
        this.isPressed = false; // while somebody presses a button of the mouse on a row, it mustn't move away
        this.isUnderPointer = false;
        this.list = table("Requests, newest first", kColumns, "requests");
        this.search = h("input", { id: "requests-search", type: "search", placeholder: "operation, client, code…" });
        this.failures = h("input", { id: "requests-failures", type: "checkbox" });
        this.pause = h("button", { type: "button", "aria-pressed": "false" }, "Pause");
        this.clear = h("button", { type: "button" }, "Clear");
        this.summary = h("p", { class: "muted numbers" });
        this.empty = h("p", { class: "empty" });
        this.more = h("button", { type: "button", class: "quiet" }, "Show more");
        this.region = h("div", { class: "scroll", role: "region", tabindex: "0", "aria-label": "List of requests" },
            this.list.element, this.empty, this.more);
        this.detail = new RequestDetail(() => this.close());
        this.element = h("section", { "aria-labelledby": "requests-title" },
            h("h2", { id: "requests-title" }, "Requests"),
            h("div", { class: "toolbar" },
                h("label", { for: "requests-search" }, "Search"), this.search,
                h("span", { class: "choice" }, this.failures, h("label", { for: "requests-failures" }, "Only failures")),
                this.pause, this.clear,
                h("a", { href: "/api/report", download: "soapwrapper-sim-requests.har", class: "button" }, "Save as HAR"),
                this.summary),
            this.region, this.detail.element);
    }

    start(again) {
        this.again = again;
        const show = () => this.show();
        const showFromStart = () => {
            this.limit = kRowsAtOnce;
            forgetKeyed(this.list.body);
            this.show();
        };
        this.search.addEventListener("input", showFromStart);
        this.failures.addEventListener("change", showFromStart);
        this.more.addEventListener("click", () => {
            this.limit += kRowsAtOnce;
            this.show();
        });
        this.pause.addEventListener("click", () => this.togglePause());
        this.clear.addEventListener("click", () => this.forgetAll().catch(again.failed));
        this.list.body.addEventListener("pointerdown", () => (this.isPressed = true));
        document.addEventListener("pointerup", () => setTimeout(() => {
            if (!this.isPressed) return;
            this.isPressed = false;
            show();
        }));
        this.region.addEventListener("pointerenter", () => (this.isUnderPointer = true));
        this.region.addEventListener("pointerleave", () => {
            this.isUnderPointer = false;
            show();
        });
        this.list.body.addEventListener("click", (event) => {
            const row = event.target.closest("tr");
            if (row && getSelection().isCollapsed) this.open(row).catch(again.failed);
        });
    }

    async refresh() {
        clearTimeout(this.timer);
        const isPaused = this.pause.getAttribute("aria-pressed") === "true";
        if (isPaused) return;
        const fresh = await this.log.fetchNew();
        if (fresh > kMostToPointAt && this.isAimedAt()) this.tellHeld();
        else if (fresh > 0 || this.log.entries.length === 0) this.show();
        this.timer = setTimeout(() => this.log.fillGaps().then(() => this.show()).catch(this.again.failed),
            kQuietMilliseconds);
    }

    leave() {
        clearTimeout(this.timer);
    }

    show() {
        if (this.isPressed) return;
        const words = this.search.value.toLowerCase().split(/\s+/).filter((word) => word !== "");
        const found = this.log.entries.filter((entry) =>
            (!this.failures.checked || isOdd(entry)) && matches(entry, words));
        const shown = found.slice(-this.limit).reverse();
        const focused = this.list.body.contains(document.activeElement)
            ? Number(document.activeElement.closest("tr").dataset.number) : null;
        // The row that has the keyboard's focus stays, however many come.
        if (focused !== null && !shown.some((entry) => entry.number === focused)) {
            shown.push(this.shown.get(focused));
        }
        this.shown = new Map(shown.map((entry) => [entry.number, entry]));
        keyed(this.list.body, shown, (entry) => entry.number, (entry) => this.row(entry));
        this.list.element.hidden = found.length === 0;
        this.empty.hidden = found.length > 0;
        setText(this.empty, this.log.entries.length === 0 ? "No requests yet. They show here as they come."
                                                          : "No request matches.");
        const hidden = found.length - this.limit;
        this.more.hidden = hidden <= 0;
        setText(this.more, "Show " + count(Math.min(Math.max(hidden, 0), kRowsAtOnce)) + " more of " + count(Math.max(hidden, 0)));
        setText(this.summary, found.length === this.log.entries.length ? counted(found.length, "request", "requests")
            : count(found.length) + " of " + counted(this.log.entries.length, "request", "requests"));
    }

    isAimedAt() {
        return this.list.body.childElementCount > 0 &&
            (this.isUnderPointer || this.list.body.contains(document.activeElement));
    }

    tellHeld() {
        setText(this.summary, "Held while you point at the list; up to request " + count(this.log.last) + " has come");
    }

    row(entry) {
        const time = new Date(entry.time);
        const fault = entry.fault !== null ? "fault " + entry.fault : "";
        const look = hasFailed(entry) ? "is-bad" : fault === "" ? "is-good" : "";
        const status = h("span", { class: "tag " + look },
            fault || (entry.status === 0 ? "no answer" : String(entry.status)));
        return this.list.row([String(entry.number),
            h("time", { datetime: time.toISOString() }, clock(time, true)),
            [entry.client, entry.tls && h("span", { class: "tag" }, "TLS")],
            h("button", { type: "button", class: "link", "aria-label": entry.operation + ", request " + entry.number },
                entry.operation),
            status,
            [entry.trouble !== "" && h("span", { class: "tag is-warning" }, "trouble: " + entry.trouble), " ", entry.outcome],
            milliseconds(entry.milliseconds), bytes(entry.requestBytes), bytes(entry.replyBytes)],
        { "data-number": entry.number });
    }

    async open(row) {
        this.opened?.classList.remove("is-chosen");
        this.opened = row;
        row.classList.add("is-chosen");
        const number = Number(row.dataset.number);
        await this.detail.show(this.shown.get(number));
        this.region.classList.add("is-short");
    }

    close() {
        this.opened?.classList.remove("is-chosen");
        this.region.classList.remove("is-short");
        const button = this.opened?.isConnected ? this.opened.querySelector("button") : this.region;
        this.opened = null;
        button.focus();
    }

    togglePause() {
        const isPaused = this.pause.getAttribute("aria-pressed") !== "true";
        this.pause.setAttribute("aria-pressed", String(isPaused));
        setText(this.pause, isPaused ? "Go on" : "Pause");
        if (!isPaused) this.again();
    }

    async forgetAll() {
        await remove("/api/requests");
        this.reset();
        this.show();
        notice("The recorded requests are cleared.");
    }

    reset() {
        this.log.forget();
        this.detail.hide();
        this.region.classList.remove("is-short");
        this.opened = null;
        forgetKeyed(this.list.body);
    }
}
