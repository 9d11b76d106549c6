// What the simulator holds, asked for once per change, and what is told of the differences.
import { getJson } from "./api.js";
import { say } from "./dom.js";

let last = null;

export async function loadState() {
    const state = await getJson("/api/state");
    if (last?.instance === state.instance) tellDifferences(last, state);
    last = state;
    return state;
}

export const lastState = () => last;

export function forgetState() {
    last = null;
}

// Each thing that has a name, by what it is called when spoken of.
function namesIn(state) {
    const names = new Set();
    for (const server of state.servers) {
        for (const lsu of server.lsus) {
            const place = " of " + server.prefix + " " + lsu.name;
            for (const snapshot of lsu.snapshots) names.add("Snapshot " + snapshot.name + place);
            for (const image of lsu.images) names.add("Image " + image.basename + place);
        }
        for (const entry of server.exports) {
            names.add("Export of " + (entry.snapshot ?? entry.lsu) + " to " + entry.hosts.join(", "));
        }
    }
    return names;
}

const kMostSpoken = 3;

function tellDifferences(before, after) {
    const old = namesIn(before);
    const now = namesIn(after);
    const texts = [...now].filter((name) => !old.has(name)).map((name) => name + " is new.")
        .concat([...old].filter((name) => !now.has(name)).map((name) => name + " is gone."));
    texts.slice(0, kMostSpoken).forEach(say);
    if (texts.length > kMostSpoken) say("And " + (texts.length - kMostSpoken) + " more changes.");
}
