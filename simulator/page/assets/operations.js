// The view of long operations: what runs, and how what ran has ended.
import { getJson, postJson } from "./api.js";
import { fill, forgetKeyed, h, keyed, notice, setText, table } from "./dom.js";
import { bytes, seconds } from "./format.js";

const kColumns = [
    { label: "No.", class: "number" },
    { label: "Kind" },
    { label: "Name", class: "name" },
    { label: "Server", class: "name" },
    { label: "State" },
    { label: "Progress", class: "progress" },
    { label: "Result", class: "name" },
    { label: "Action" },
];
const kStates = {
    running: { class: "tag is-accent", text: "▸ running" },
    done: { class: "tag is-good", text: "✓ done" },
    failed: { class: "tag is-bad", text: "✕ failed" },
    cancelled: { class: "tag", text: "– cancelled" },
};
const kPollMilliseconds = 1000;

export class OperationsView {
    constructor() {
        this.name = "operations";
        this.title = "Operations";
        this.list = table("Long operations, newest first", kColumns);
        this.empty = h("p", { class: "empty" }, "No operations yet. One shows here when a client starts it.");
        this.element = h("section", { "aria-labelledby": "operations-title" },
            h("h2", { id: "operations-title" }, "Operations"),
            h("p", { class: "lead" }, "What clients started and ask after. Cancelling here is as if a client had done it."),
            h("div", { class: "panel" }, this.list.element, this.empty));
        this.timer = 0;
    }

    // Asks again by itself for as long as something runs: the passing of time is no change that is told.
    async refresh(again) {
        clearTimeout(this.timer);
        const { operations } = await getJson("/api/operations");
        this.empty.hidden = operations.length > 0;
        this.list.element.hidden = operations.length === 0;
        keyed(this.list.body, operations, (operation) => operation.number,
            (operation) => this.row(operation), (row, operation) => this.update(row, operation));
        if (operations.some((operation) => operation.state === "running")) this.timer = setTimeout(again, kPollMilliseconds);
    }

    row(operation) {
        const bar = h("progress", { max: "1", value: "0", "aria-label": "Progress of operation " + operation.number });
        const cancel = h("button", { type: "button", class: "small", click: () => this.cancel(operation.number) },
            "Cancel", h("span", { class: "unseen" }, " operation " + operation.number));
        return this.list.row([String(operation.number), operation.kind, operation.name ?? "–", operation.server, h("span"),
            [h("span", { class: "detail numbers" }), bar], "", cancel]);
    }

    update(row, operation) {
        const [, , , , state, progress, result, action] = row.cells;
        const look = kStates[operation.state] ?? { class: "tag", text: operation.state };
        fill(state, h("span", { class: look.class }, look.text));
        const isRunning = operation.state === "running";
        const share = operation.seconds > 0 ? Math.min(operation.elapsed / operation.seconds, 1) : 1;
        progress.lastElementChild.value = operation.state === "done" ? 1 : share;
        setText(progress.firstElementChild, this.progressText(operation, isRunning));
        setText(result, operation.error === 0 || isRunning ? operation.result : "error " + operation.error +
            (operation.result === "" ? "" : ", " + operation.result));
        action.firstElementChild.hidden = !isRunning;
    }

    progressText(operation, isRunning) {
        const time = isRunning ? seconds(operation.elapsed) + " of " + seconds(operation.seconds) : seconds(operation.elapsed);
        return operation.bytes === 0 ? time : bytes(operation.bytesMoved) + " of " + bytes(operation.bytes) + " · " + time;
    }

    start(again) {
        this.again = again;
    }

    async cancel(number) {
        try {
            await postJson("/api/operations/" + number + "/cancel");
            notice("Operation " + number + " was cancelled.");
        } catch (trouble) {
            this.again.failed(trouble);
        }
        this.again();
    }

    leave() {
        clearTimeout(this.timer);
    }

    reset() {
        forgetKeyed(this.list.body);
    }
}
