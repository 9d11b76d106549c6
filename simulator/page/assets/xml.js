// XML with an element a line, its tags, attributes and comments told apart by colour. What isn't XML is shown as it is.
import { h, lines } from "./dom.js";

const kPart = /(<!--[\s\S]*?(?:-->|$)|<\?[\s\S]*?(?:\?>|$)|<!\[CDATA\[[\s\S]*?(?:\]\]>|$))|(<\/?[^\s<>/"']+)((?:[^<>"'/]|"[^"<]*"|'[^'<]*')*)(\/?>)/g;
const kAttribute = /([^\s=/]+\s*=\s*)("[^"]*"|'[^']*')/g;
const kWidth = 70; // of a tag, above which each attribute has a line of its own
const kDeepest = 40;

const span = (kind, text) => {
    const element = h("span", { class: kind });
    element.append(lines(text));
    return element;
};

const newLine = (depth) => lines("\n" + "  ".repeat(Math.min(depth, kDeepest)));

function attributes(text, depth) {
    const isLong = text.length > kWidth;
    const nodes = [];
    let end = 0;
    for (const found of text.matchAll(kAttribute)) {
        const between = text.slice(end, found.index);
        nodes.push(isLong && between.trim() === "" ? newLine(depth + 2) : lines(between));
        nodes.push(span("xml-name", found[1]), span("xml-value", found[2]));
        end = found.index + found[0].length;
    }
    nodes.push(lines(text.slice(end)));
    return nodes;
}

export function coloured(text) {
    const nodes = [];
    let end = 0;
    let depth = 0;
    let isInline = true; // ahead of the first part, behind a text, and between the tags of an empty element
    const startLine = () => {
        if (!isInline) nodes.push(newLine(depth));
    };
    for (const found of text.matchAll(kPart)) {
        const between = text.slice(end, found.index);
        end = found.index + found[0].length;
        if (between.trim() !== "") {
            nodes.push(lines(between));
            isInline = true;
        }
        const [, aside, name, rest, close] = found;
        const isEnd = name?.startsWith("</");
        if (isEnd) depth = Math.max(depth - 1, 0);
        else if (aside === undefined && between.trim() === "" && nodes.length > 0) isInline = false;
        startLine();
        if (aside !== undefined) nodes.push(span("xml-aside", aside));
        else nodes.push(span("xml-tag", name), ...attributes(rest, depth), span("xml-tag", close));
        const isStart = aside === undefined && !isEnd && close === ">";
        if (isStart) depth += 1;
        isInline = isStart || aside?.startsWith("<![CDATA[") === true;
    }
    nodes.push(lines(text.slice(end)));
    return nodes;
}
