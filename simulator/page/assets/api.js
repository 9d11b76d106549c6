// What the simulator is asked, and how it says no.

// The simulator gave an answer, and it wasn't what was asked for.
export class Refusal extends Error {
    constructor(text, status) {
        super(text);
        this.status = status;
    }
}

// Nobody answered.
export class NoAnswer extends Error {}

const kPatienceMilliseconds = 8000;

async function ask(method, path, body) {
    const request = { method, cache: "no-store", signal: AbortSignal.timeout(kPatienceMilliseconds) };
    if (body !== undefined) {
        request.body = body;
        request.headers = { "Content-Type": "application/json" };
    }
    let status = 0;
    let text = "";
    try {
        const answer = await fetch(path, request);
        status = answer.status;
        text = await answer.text();
    } catch {
        throw new NoAnswer("The simulator doesn't answer.");
    }
    let json = null;
    try {
        json = text === "" ? null : JSON.parse(text);
    } catch {
        if (status < 400) throw new Refusal("The answer to " + path + " can't be read.", status);
    }
    if (status >= 400) throw new Refusal(json?.error ?? "The answer is HTTP status " + status + ".", status);
    return json;
}

function withQuery(path, query) {
    const given = Object.entries(query).filter(([, value]) => value !== "" && value !== null && value !== undefined);
    return given.length === 0 ? path : path + "?" + new URLSearchParams(given);
}

export const getJson = (path, query = {}) => ask("GET", withQuery(path, query));
export const postJson = (path, record) => ask("POST", path, record === undefined ? "{}" : JSON.stringify(record));
export const postText = (path, text) => ask("POST", path, text);
export const remove = (path) => ask("DELETE", path);
