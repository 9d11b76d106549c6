// The last requests, as far as they were fetched. Many may come between two looks, and then only the newest of them are
// fetched: the rest follows once it is quiet.
import { getJson } from "./api.js";

const kMost = 1000;
const kAtOnce = 200;

export class RequestLog {
    constructor() {
        this.forget();
    }

    forget() {
        this.entries = []; // ascending
        this.last = 0;
        this.hasGap = true; // what was before the first look
    }

    // How many are new, or that what was there is gone.
    async fetchNew() {
        const answer = await getJson("/api/requests", { after: this.last, limit: kAtOnce });
        if (answer.last < this.last) this.forget(); // cleared, by whomever
        if (answer.requests.length === 0) {
            const wasFilled = this.entries.length > 0 && answer.last === 0;
            if (wasFilled) this.forget();
            return wasFilled ? 1 : 0;
        }
        if (answer.requests[0].number > this.last + 1) this.hasGap = true;
        const known = this.last;
        this.entries = this.entries.concat(answer.requests.filter((entry) => entry.number > known)).slice(-kMost);
        this.last = this.entries.at(-1).number;
        return this.last - known;
    }

    async fillGaps() {
        if (!this.hasGap) return;
        const answer = await getJson("/api/requests", { limit: kMost });
        this.entries = answer.requests;
        this.last = this.entries.at(-1)?.number ?? 0;
        this.hasGap = false;
    }
}

const kEndOfList = 2060013; // how each list ends

export const hasFailed = (entry) => entry.fault !== null ? entry.fault !== kEndOfList : entry.status !== 200;
export const isOdd = (entry) => hasFailed(entry) || entry.trouble !== "";

export function matches(entry, words) {
    const text = [entry.number, entry.client, entry.operation, entry.status, entry.fault ?? "", entry.outcome, entry.trouble]
        .join(" ").toLowerCase();
    return words.every((word) => text.includes(word));
}
