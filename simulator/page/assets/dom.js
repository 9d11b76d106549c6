// Elements, made so that a text never becomes markup, and lists that keep the elements which stay.

// Control characters have pictures of their own; what would turn the direction of a text, or has no width, is spelt out.
export function visible(text, keptControls = "") {
    return String(text).replace(/[\u0000-\u001f\u007f-\u009f\u061c\u200b-\u200f\u2028-\u202e\u2060-\u2069\ufeff]/g, (found) => {
        if (keptControls.includes(found)) return found;
        const code = found.charCodeAt(0);
        if (code < 0x20) return String.fromCharCode(0x2400 + code);
        if (code === 0x7f) return "\u2421";
        return "\\u" + code.toString(16).padStart(4, "0");
    });
}

// These are read by programs, all others by people.
const kRawAttributes = new Set(["href", "value", "id", "for", "list", "name", "datetime"]);

export function h(tag, attributes = {}, ...children) {
    const element = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) {
        if (value === null || value === undefined || value === false) continue;
        if (typeof value === "function") element.addEventListener(name, value);
        else element.setAttribute(name, value === true ? "" : kRawAttributes.has(name) ? value : visible(value));
    }
    fill(element, ...children);
    return element;
}

export function fill(element, ...children) {
    const present = children.flat(2).filter((child) => child !== null && child !== undefined && child !== false);
    element.replaceChildren(...present.map((child) => (child instanceof Node ? child : visible(child))));
}

// A text that may be broken between its pieces.
export const breakable = (pieces) => pieces.flatMap((piece) => [piece, h("wbr")]);

// A text of several lines.
export const lines = (text) => document.createTextNode(visible(text.replace(/\r\n/g, "\n"), "\n\t"));

export function setText(element, text) {
    const shown = visible(text);
    if (element.textContent !== shown) element.textContent = shown;
}

export function setAttribute(element, name, value) {
    if (value === null || value === false) element.removeAttribute(name);
    else if (element.getAttribute(name) !== String(value)) element.setAttribute(name, value);
}

const kept = new WeakMap();

// Has `parent` hold one element for each item, in their order. An element stays for as long as its item does, so that
// focus and scroll positions do too. What wasn't there before is marked for a moment, but not in a list's first filling.
// `update` is called only if the item isn't what it was.
export function keyed(parent, items, keyOf, make, update) {
    const before = kept.get(parent);
    const now = new Map();
    for (const item of items) {
        let key = String(keyOf(item));
        while (now.has(key)) key += " again";
        const text = JSON.stringify(item);
        const known = before?.get(key);
        const node = known ? known.node : make(item);
        if (!known || known.text !== text) update?.(node, item);
        if (before && !known) markFresh(node);
        now.set(key, { node, text });
    }
    for (const [key, { node }] of before ?? []) {
        if (!now.has(key)) node.remove();
    }
    let place = parent.firstChild;
    for (const { node } of now.values()) {
        if (node === place) place = place.nextSibling;
        else parent.insertBefore(node, place);
    }
    kept.set(parent, now);
}

// The next filling is a first one again.
export function forgetKeyed(parent) {
    kept.delete(parent);
    parent.replaceChildren();
}

const kFreshMilliseconds = 4000;

export function markFresh(node) {
    node.classList.add("fresh");
    setTimeout(() => node.classList.remove("fresh"), kFreshMilliseconds);
}

// A table of which narrow screens make one block per row. That takes a table's roles from it, so they are said.
export function table(caption, columns, className = "") {
    const body = h("tbody", { role: "rowgroup" });
    const element = h("table", { class: "stacking " + className, role: "table" },
        h("caption", {}, caption),
        h("thead", { role: "rowgroup" }, h("tr", { role: "row" }, columns.map((column) =>
            h("th", { role: "columnheader", scope: "col", class: column.class }, column.label)))),
        body);
    const row = (cells, attributes = {}) => h("tr", { role: "row", ...attributes }, cells.map((cell, index) =>
        h("td", { role: "cell", class: columns[index].class, "data-label": columns[index].label }, cell)));
    return { element, body, row };
}

let noticeTimer = 0;

// What an action did, for eyes and screen readers.
export function notice(text) {
    const place = document.getElementById("notice");
    setText(place, text);
    place.hidden = false;
    clearTimeout(noticeTimer);
    noticeTimer = setTimeout(() => (place.hidden = true), 6000);
}

// What changed by itself: to be seen in its place, and said here.
export function say(text) {
    const place = document.getElementById("spoken");
    place.append(h("span", {}, text + " "));
    while (place.childElementCount > 5) place.firstElementChild.remove();
}
