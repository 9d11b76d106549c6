// The kinds of trouble: what each does and what it needs to be told.
const isWhole = (text) => /^-?\d+$/.test(text);

const kMilliseconds = {
    name: "milliseconds",
    label: "Milliseconds",
    start: "2000",
    wrong: (text) => isWhole(text) && Number(text) >= 0 && Number(text) <= 3600000 ? ""
        : "A whole number from 0 to 3600000 (an hour).",
};

export const kTroubleKinds = [
    {
        kind: "fault",
        label: "SOAP fault",
        text: "Isn't performed. The answer is a fault with this error code.",
        fields: [{
            name: "code",
            label: "Error code",
            start: "2060005",
            list: "known-codes",
            wrong: (text) => isWhole(text) && Math.abs(Number(text)) <= 4294967295 ? "" : "A whole number of 32 bits, such as 2060005.",
        }],
    },
    { kind: "delay", label: "Delay, fixed", text: "Is performed after a wait, and then meets whatever else is set.",
        fields: [kMilliseconds] },
    {
        kind: "delay",
        choice: "delay-long",
        label: "Delay, long-tailed",
        text: "Is performed after a wait of random length: half of the waits are shorter than the median, few are much longer.",
        fields: [{ ...kMilliseconds, label: "Median in milliseconds" }, {
            name: "sigma",
            label: "Spread (sigma)",
            start: "0.5",
            wrong: (text) => /^\d*\.?\d+$/.test(text) && Number(text) > 0 && Number(text) <= 10 ? "" : "A number above 0, up to 10.",
        }],
    },
    { kind: "dribble", label: "Dribble", text: "Is performed. The answer comes in small pieces, over this time.",
        fields: [kMilliseconds] },
    { kind: "cut", label: "Cut", text: "Is performed. The connection ends after half of the answer.", fields: [] },
    { kind: "empty", label: "Empty", text: "Isn't performed. The connection ends without a byte.", fields: [] },
    { kind: "garbage", label: "Garbage", text: "Isn't performed. The answer is no HTTP.", fields: [] },
    { kind: "malformed-chunk", label: "Malformed chunk", text: "Isn't performed. The answer has a chunk whose size is no number.",
        fields: [] },
    {
        kind: "http-error",
        label: "HTTP error",
        text: "Isn't performed. The answer has this status and no SOAP message.",
        fields: [{
            name: "status",
            label: "HTTP status",
            start: "503",
            wrong: (text) => isWhole(text) && Number(text) >= 400 && Number(text) <= 599 ? "" : "A number from 400 to 599.",
        }],
    },
    { kind: "reset", label: "Reset", text: "Isn't performed. The connection ends with a TCP reset.", fields: [] },
];

export const choiceOf = (kind) => kind.choice ?? kind.kind;

export const kKnownCodes = [
    [2060001, "missing element"], [2060005, "busy"], [2060012, "in use"], [2060013, "end of list"], [2060022, "bad handle"],
    [2069001, "unknown server"], [2069002, "credential refused"], [2069003, "not supported"], [2069004, "too many sessions"],
    [2069005, "unknown LSU"], [2069006, "unknown image"], [2069007, "unknown snapshot"], [2069008, "unknown volume"],
    [2069010, "bad value"], [2069012, "too many open"], [2069031, "cancelled"],
];

// A trouble that is set, in words.
export function describe(trouble) {
    switch (trouble.kind) {
    case "fault": return "fault " + trouble.code;
    case "delay": return trouble.sigma ? "delay around " + trouble.milliseconds + " ms, spread " + trouble.sigma
                                       : "delay of " + trouble.milliseconds + " ms";
    case "dribble": return "dribble over " + trouble.milliseconds + " ms";
    case "http-error": return "HTTP error " + trouble.status;
    default: return trouble.kind.replace("-", " ");
    }
}
