// What is asked before the storage is another one: a reset, and a scenario file to load.
import { postJson, postText } from "./api.js";
import { h, notice, setText } from "./dom.js";

// A dialog with a text, parts, and a button that does what it is for. What goes wrong is told in it.
function dialog(id, title, parts, actionText, act) {
    const error = h("p", { class: "error", role: "alert" });
    const action = h("button", { type: "submit", class: "primary" }, actionText);
    const cancel = h("button", { type: "button", click: () => element.close() }, "Cancel");
    const form = h("form", { method: "dialog", novalidate: true }, h("h2", { id }, title), parts, error,
        h("div", { class: "actions" }, cancel, action));
    const element = h("dialog", { "aria-labelledby": id }, form);
    form.addEventListener("submit", async (event) => {
        event.preventDefault();
        setText(error, "");
        action.disabled = true;
        try {
            await act();
            element.close();
        } catch (trouble) {
            setText(error, "✕ " + trouble.message);
        }
        action.disabled = false;
    });
    element.addEventListener("close", () => setText(error, ""));
    document.body.append(element);
    return element;
}

export function resetDialog(changed) {
    return dialog("reset-title", "Reset to the scenario?",
        h("p", {}, "Storage, operations and events become what the scenario says, and troubles what the command line said. "
            + "Sessions and lists are gone. The recorded requests stay."),
        "Reset", async () => {
            await postJson("/api/reset");
            notice("The storage is as the scenario has it.");
            changed();
        });
}

export function loadDialog(changed) {
    const file = h("input", { type: "file", id: "scenario-file", accept: ".json,application/json" });
    return dialog("load-title", "Load a scenario",
        [h("p", {}, "The storage becomes what the file describes. Sessions, lists and operations are gone."),
            h("div", { class: "field" }, h("label", { for: "scenario-file" }, "Scenario file (JSON)"), file),
            h("p", {}, h("a", { href: "/api/scenario", download: "scenario.json" }, "Save the present scenario"),
                " to start from.")],
        "Load", async () => {
            const chosen = file.files[0];
            if (!chosen) throw new Error("Choose a file first.");
            await postText("/api/scenario", await chosen.text());
            notice("The scenario " + chosen.name + " is loaded.");
            file.value = "";
            changed();
        });
}
