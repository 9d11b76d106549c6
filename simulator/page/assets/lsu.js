// One LSU: its space and its partners beside its snapshots and images.
import { breakable, fill, h, keyed, setText, table } from "./dom.js";
import { bytes, count, partner, pieces, volume } from "./format.js";
import { changesLink } from "./links.js";
import { Space } from "./space.js";
import { TimeLine } from "./timeline.js";

const kImageColumns = [
    { label: "Image", class: "name" },
    { label: "Date" },
    { label: "Policy" },
    { label: "Size", class: "number" },
    { label: "Status", class: "number" },
    { label: "In use" },
];
const kMostImages = 100;

const textList = (texts) => texts.map((text) => h("li", { class: "name" }, breakable(pieces(text))));

export class Lsu {
    constructor(server, lsu) {
        this.server = server;
        this.label = h("p", { class: "label" });
        this.description = h("p", { class: "muted" });
        this.space = new Space("Used");
        this.physical = new Space("Used, physically");
        this.facts = h("dl", { class: "pairs" });
        this.timeLine = new TimeLine("Snapshots of " + lsu.name + ", oldest first");
        this.snapshotCount = h("span", { class: "muted numbers" });
        this.compare = h("a", { href: changesLink(server, lsu.name) }, "Compare",
            h("span", { class: "unseen" }, " snapshots of " + lsu.name));
        this.images = table("Images of " + lsu.name, kImageColumns);
        this.imageCount = h("span", { class: "muted numbers" });
        this.element = h("article", { class: "lsu", "aria-label": "LSU " + lsu.name },
            h("div", { class: "lsu-side" },
                h("h4", { class: "name" }, lsu.name), this.label, this.description,
                this.space.element, this.physical.element, this.facts),
            h("div", { class: "lsu-main" },
                h("div", { class: "title" }, h("h5", {}, "Snapshots"), this.snapshotCount, this.compare),
                this.timeLine.element,
                h("div", { class: "title" }, h("h5", {}, "Images"), this.imageCount),
                this.images.element));
    }

    update(lsu) {
        setText(this.label, lsu.label);
        this.label.hidden = lsu.label === "";
        setText(this.description, lsu.description);
        this.description.hidden = lsu.description === "";
        this.space.update(lsu.used, lsu.capacity);
        this.physical.update(lsu.usedPhys, lsu.capacityPhys);
        this.describe(lsu);
        setText(this.snapshotCount, lsu.snapshots.length === 0 ? "No snapshots." : count(lsu.snapshots.length));
        this.compare.hidden = lsu.snapshots.length === 0;
        this.timeLine.update(lsu.snapshots);
        this.listImages(lsu.images);
    }

    describe(lsu) {
        const rows = [
            ["Volumes", lsu.volumes.map(volume)],
            ["Replicates to", lsu.targets.map(partner)],
            ["Replicated from", lsu.sources.map(partner)],
        ].filter(([, texts]) => texts.length > 0);
        fill(this.facts, rows.map(([name, texts]) =>
            h("div", {}, h("dt", {}, name), h("dd", {}, h("ul", { class: "plain" }, textList(texts))))));
    }

    listImages(images) {
        setText(this.imageCount, images.length === 0 ? "No images."
            : images.length > kMostImages ? "the newest " + kMostImages + " of " + count(images.length)
                : count(images.length));
        this.images.element.hidden = images.length === 0;
        keyed(this.images.body, images.slice(-kMostImages), (image) => image.basename + " " + image.fulldate,
            () => this.images.row(kImageColumns.map(() => "")), (row, image) => {
                const texts = [image.basename, image.fulldate || image.date, image.policy, bytes(image.size), image.status,
                    image.isOpen ? "open" : ""];
                texts.forEach((text, index) => setText(row.cells[index], text));
            });
    }
}
