// An LSU's snapshots along a line, oldest first. Only the newest are shown until more are asked for.
import { breakable, fill, h, keyed, setText } from "./dom.js";
import { bytes, count, pieces, storageTime, volume } from "./format.js";

const kAtOnce = 40;

export class TimeLine {
    // `controls(snapshot)` gives more elements for each, such as buttons to choose it by.
    constructor(label, controls = () => []) {
        this.controls = controls;
        this.limit = kAtOnce;
        this.snapshots = [];
        this.list = h("ol", { class: "timeline", "aria-label": label });
        this.more = h("button", { type: "button", class: "quiet", click: () => this.showMore() });
        this.element = h("div", {}, this.more, this.list);
    }

    update(snapshots) {
        this.snapshots = snapshots;
        const hidden = Math.max(snapshots.length - this.limit, 0);
        this.more.hidden = hidden === 0;
        setText(this.more, "Show " + count(Math.min(hidden, kAtOnce)) + " older of " + count(hidden));
        this.list.hidden = snapshots.length === 0;
        keyed(this.list, snapshots.slice(hidden), (snapshot) => snapshot.name,
            (snapshot) => this.entry(snapshot), (entry, snapshot) => this.describe(entry, snapshot));
    }

    showMore() {
        this.limit += kAtOnce;
        this.update(this.snapshots);
    }

    entry(snapshot) {
        return h("li", { class: "moment" }, h("div", { class: "moment-text" }), this.controls(snapshot));
    }

    describe(entry, snapshot) {
        fill(entry.firstElementChild,
            h("strong", { class: "name" }, snapshot.name),
            snapshot.isExported && h("span", { class: "tag is-accent" }, "exported"),
            h("span", { class: "detail" }, breakable(pieces(volume(snapshot.volume)))),
            h("span", { class: "detail numbers" }, bytes(snapshot.size),
                snapshot.status !== 0 && " · status " + snapshot.status),
            snapshot.made !== null && h("span", { class: "detail numbers" }, "made " + storageTime(snapshot.made)));
    }
}
