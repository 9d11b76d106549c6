// Whether the simulator answers, and that something changed: it tells by a stream of events.
import { getJson, NoAnswer } from "./api.js";

const kRetryMilliseconds = 1000;
const kPollMilliseconds = 1000;
const kSilenceMilliseconds = 10000;

export class Live {
    // `on.change(isAnotherInstance)` when something changed, `on.connection(state)` with "connecting", "connected" or
    // "lost".
    constructor(on) {
        this.on = on;
        this.instance = null;
        this.revision = null;
        this.requests = 0;
        this.state = "connecting";
        this.source = null;
        this.timer = 0;
        this.lastHeard = 0;
        this.isResting = false;
    }

    // A browser has six connections to a server, for all of its tabs: one that nobody looks at gives its own back.
    start() {
        this.listen();
        setInterval(() => this.checkSilence(), kSilenceMilliseconds);
        document.addEventListener("visibilitychange", () => (document.hidden ? this.rest() : this.listen()));
        addEventListener("pagehide", () => this.rest());
        addEventListener("pageshow", (event) => event.persisted && this.listen());
    }

    rest() {
        clearTimeout(this.timer);
        this.source?.close();
        this.source = null;
        this.isResting = true;
    }

    listen() {
        clearTimeout(this.timer);
        this.isResting = false;
        this.source?.close();
        const source = new EventSource("/api/changes");
        this.source = source;
        source.addEventListener("change", (event) => {
            if (source === this.source) this.hear(JSON.parse(event.data));
        });
        source.addEventListener("error", () => {
            if (source !== this.source) return;
            source.close();
            this.source = null;
            this.probe();
        });
    }

    hear({ instance, revision, requests }) {
        const isAnother = this.instance !== null && this.instance !== instance;
        const isChange = isAnother || revision === undefined || this.revision !== revision || this.requests !== requests ||
            this.state !== "connected";
        this.instance = instance;
        this.revision = revision ?? null;
        this.requests = requests;
        this.lastHeard = Date.now();
        this.tell("connected");
        if (isChange) this.on.change(isAnother);
    }

    tell(state) {
        if (this.state === state) return;
        this.state = state;
        this.on.connection(state);
    }

    // Without a stream: is there anybody? Then there may be one again, else, where too many are open, asking helps.
    async probe() {
        clearTimeout(this.timer);
        try {
            const answer = await getJson("/api/requests", { limit: 1 });
            const isFirst = this.state !== "connected";
            if (this.isResting) return;
            this.hear({ instance: answer.instance, requests: answer.last });
            this.timer = setTimeout(() => this.listen(), isFirst ? 0 : kPollMilliseconds);
        } catch (trouble) {
            if (trouble instanceof NoAnswer) this.lost();
            else this.timer = setTimeout(() => this.probe(), kRetryMilliseconds);
        }
    }

    // A view or the stream had no answer.
    lost() {
        if (this.isResting) return;
        this.tell("lost");
        this.source?.close();
        this.source = null;
        clearTimeout(this.timer);
        this.timer = setTimeout(() => this.probe(), kRetryMilliseconds);
    }

    // A simulator that hangs keeps its connections open.
    async checkSilence() {
        if (this.isResting || this.state !== "connected" || Date.now() - this.lastHeard < kSilenceMilliseconds) return;
        try {
            const answer = await getJson("/api/requests", { limit: 1 });
            if (answer.instance !== this.instance) this.listen();
        } catch (trouble) {
            if (trouble instanceof NoAnswer) this.lost();
        }
    }
}
