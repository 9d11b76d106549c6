// The page: the header, the views' tabs, and which of them is asked to look again when something changed.
import { getJson, NoAnswer } from "./api.js";
import { ChangesView } from "./changes.js";
import { loadDialog, resetDialog } from "./dialogs.js";
import { fill, h, notice, setText } from "./dom.js";
import { EventsView } from "./events.js";
import { readFragment } from "./links.js";
import { Live } from "./live.js";
import { OperationsView } from "./operations.js";
import { RequestsView } from "./requests.js";
import { forgetState, loadState } from "./state.js";
import { StorageView } from "./storage.js";
import { TroubleView } from "./trouble.js";

const kViews = [new StorageView(), new OperationsView(), new EventsView(), new RequestsView(), new TroubleView(),
    new ChangesView()];
const kBetweenLooksMilliseconds = 250;
const kBetweenHeadersMilliseconds = 2000;
const kBetweenTimesMilliseconds = 1000;

// Runs `work`, which is a promise, again and again as it is asked to, but not more often than that.
function paced(milliseconds, work) {
    let isAsked = false;
    let isBusy = false;
    const run = async () => {
        if (isBusy || !isAsked) return;
        isBusy = true;
        isAsked = false;
        await work();
        setTimeout(() => {
            isBusy = false;
            run();
        }, milliseconds);
    };
    return () => {
        isAsked = true;
        run();
    };
}

const place = (id) => document.getElementById(id);
let current = kViews[0];
let timeTimer = 0;
let wasRunning = false;

const live = new Live({
    change(isAnotherInstance) {
        if (isAnotherInstance) resetViews();
        look();
        lookAtHeader();
    },
    connection(state) {
        const texts = { connecting: "Connecting", connected: "Connected", lost: "No answer" };
        setText(place("connection"), texts[state]);
        place("connection").dataset.state = state;
        place("alert").hidden = state !== "lost";
        fill(place("alert"), state === "lost" && [h("p", {}, "The simulator doesn't answer; trying again."),
            h("button", { type: "button", class: "small", click: () => live.probe() }, "Try now")]);
    },
});

// What a view couldn't do is said above it, until it can.
function told(view, trouble) {
    setText(view.trouble, trouble === null ? "" : "✕ " + trouble.message);
    view.trouble.hidden = trouble === null;
}

const look = paced(kBetweenLooksMilliseconds, async () => {
    const view = current;
    try {
        await view.refresh(look);
        told(view, null);
        if (view.watchesTime) await lookAgainWhileOperationsRun();
    } catch (trouble) {
        if (trouble instanceof NoAnswer) live.lost();
        else told(view, trouble);
    }
});

// What an operation brings about when its time is up is told to nobody: it is there from the next look on.
async function lookAgainWhileOperationsRun() {
    clearTimeout(timeTimer);
    const { operations } = await getJson("/api/operations");
    if (operations.some((operation) => operation.state === "running")) {
        timeTimer = setTimeout(look, kBetweenTimesMilliseconds);
    } else if (wasRunning) {
        look();
    }
    wasRunning = operations.some((operation) => operation.state === "running");
}

const lookAtHeader = paced(kBetweenHeadersMilliseconds, async () => {
    try {
        const state = await loadState();
        setText(place("release"), state.release);
        setText(place("scenario"), state.scenario);
        fill(place("addresses"), state.urls.map((url) => h("span", { class: "name" }, url)));
        document.title = current.title + " – soapwrapper-sim";
    } catch (trouble) {
        if (trouble instanceof NoAnswer) live.lost();
    }
});

function resetViews() {
    forgetState();
    for (const view of kViews) view.reset();
}

function show() {
    const { view: name } = readFragment();
    if (name === "view") { // the link past the header
        history.replaceState(null, "", "#" + current.name);
        place("view").focus();
        return;
    }
    current.leave?.();
    current = kViews.find((view) => view.name === name) ?? kViews[0];
    for (const view of kViews) {
        view.element.hidden = view !== current;
        if (view === current) view.tab.setAttribute("aria-current", "page");
        else view.tab.removeAttribute("aria-current");
    }
    document.title = current.title + " – soapwrapper-sim";
    current.enter?.();
    look();
}

for (const view of kViews) {
    view.trouble = h("p", { class: "error", role: "alert", hidden: true });
    view.element.firstElementChild.after(view.trouble);
    view.tab = h("a", { href: "#" + view.name }, view.title);
    place("tabs").append(h("li", {}, view.tab));
    place("view").append(view.element);
    const again = () => look();
    again.failed = (trouble) => (trouble instanceof NoAnswer ? live.lost() : notice("✕ " + trouble.message));
    view.start?.(again);
}
const isAnotherStorage = () => {
    resetViews();
    look();
    lookAtHeader();
};
const reset = resetDialog(isAnotherStorage);
const load = loadDialog(isAnotherStorage);
place("reset").addEventListener("click", () => reset.showModal());
place("load").addEventListener("click", () => load.showModal());
addEventListener("hashchange", show);
show();
live.start();
