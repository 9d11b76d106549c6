// What differs between two snapshots, as a tree of directories that open and close.
import { h } from "./dom.js";
import { bytes, count, counted } from "./format.js";

const kMarks = {
    created: { mark: "+", class: "is-good" },
    changed: { mark: "~", class: "is-warning" },
    deleted: { mark: "−", class: "is-bad" },
};
const kOpenUpTo = 200; // entries: a larger tree starts closed
const kAtOnce = 300;

function grow(changes) {
    const root = { children: new Map(), change: null, total: 0 };
    for (const change of changes) {
        let node = root;
        node.total += 1;
        for (const part of change.path.split("/")) {
            if (!node.children.has(part)) node.children.set(part, { children: new Map(), change: null, total: 0 });
            node = node.children.get(part);
            node.total += 1;
        }
        node.change = change;
    }
    return root;
}

function line(name, node) {
    const { change } = node;
    const look = kMarks[change?.change] ?? { mark: " ", class: "" };
    const below = node.total - (change === null ? 0 : 1);
    return [
        h("span", { class: "mark " + look.class, "aria-hidden": "true" }, look.mark),
        h("span", { class: "name" }, name),
        change !== null && h("span", { class: "tag " + look.class }, change.change),
        change !== null && change.type !== "file" && h("span", { class: "detail-inline" }, change.type),
        change !== null && change.type === "file" && h("span", { class: "detail-inline numbers" }, bytes(change.size)),
        node.children.size > 0 && h("span", { class: "detail-inline" }, counted(below, "change", "changes") + " below"),
    ];
}

function branch(name, node, isOpen) {
    if (node.children.size === 0) return h("li", {}, h("div", { class: "leaf" }, line(name, node)));
    const details = h("details", {}, h("summary", {}, line(name, node)));
    const growChildren = () => {
        if (details.childElementCount === 1) details.append(branches(node, isOpen));
    };
    details.addEventListener("toggle", growChildren);
    if (isOpen) {
        growChildren();
        details.open = true;
    }
    return h("li", {}, details);
}

function branches(node, isOpen) {
    const list = h("ul", { class: "tree" });
    const rest = [...node.children].sort(([one], [other]) => (one < other ? -1 : 1));
    const addMore = () => {
        list.append(...rest.splice(0, kAtOnce).map(([name, child]) => branch(name, child, isOpen)));
        if (rest.length === 0) return;
        const more = h("li", {}, h("button", { type: "button", class: "quiet", click: () => {
            more.remove();
            addMore();
        } }, "Show " + count(Math.min(rest.length, kAtOnce)) + " more of " + count(rest.length)));
        list.append(more);
    };
    addMore();
    return list;
}

export const changeTree = (changes) => branches(grow(changes), changes.length <= kOpenUpTo);

// "2 created, 1 deleted"
export function summary(changes) {
    return Object.keys(kMarks).map((kind) => [changes.filter((change) => change.change === kind).length, kind])
        .filter(([number]) => number > 0).map(([number, kind]) => count(number) + " " + kind).join(", ");
}
