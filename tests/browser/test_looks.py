"""Light and dark, narrow and wide."""
import base64
import os
import unittest

from page import VIEWS, PageTest

NAME = "Network_NTAP:filer1"
PICTURES = os.environ.get("SCREENSHOT_FOLDER")

# For each text that is seen, how it contrasts with what is behind it; for each control, how its edge or its ground does.
CONTRASTS = r"""
function parts(colour) {
    const numbers = colour.match(/[\d.]+/g).map(Number);
    if (!colour.startsWith("rgb")) throw new Error("an unknown notation of a colour: " + colour);
    return { rgb: numbers.slice(0, 3), alpha: numbers[3] ?? 1 };
}
const over = (top, below) => top.rgb.map((part, index) => part * top.alpha + below[index] * (1 - top.alpha));
function ground(element) {
    if (element === null) return matchMedia("(prefers-color-scheme: dark)").matches ? [0, 0, 0] : [255, 255, 255];
    const own = parts(getComputedStyle(element).backgroundColor);
    return own.alpha === 1 ? own.rgb : over(own, ground(element.parentElement));
}
function luminance(rgb) {
    const [red, green, blue] = rgb.map((part) => part / 255).map((part) =>
        part <= 0.03928 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4);
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
}
function contrast(one, other) {
    const [light, dark] = [luminance(one), luminance(other)].sort((a, b) => b - a);
    return (light + 0.05) / (dark + 0.05);
}
const isSeen = (element) => element.checkVisibility({ checkVisibilityCSS: true }) && element.getClientRects().length > 0
    && !element.closest(".unseen, caption, .skip, :disabled, option");
const found = [];
const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
while (walker.nextNode()) {
    const element = walker.currentNode.parentElement;
    if (walker.currentNode.data.trim() === "" || !isSeen(element)) continue;
    const behind = ground(element);
    const ratio = contrast(over(parts(getComputedStyle(element).color), behind), behind);
    found.push({ kind: "text", text: walker.currentNode.data.trim().slice(0, 40), ratio });
}
for (const element of document.querySelectorAll("input, select, button, progress, [role=meter]")) {
    if (!isSeen(element) || getComputedStyle(element).appearance === "auto") continue;
    const style = getComputedStyle(element);
    const behind = ground(element.parentElement);
    const text = contrast(over(parts(style.color), ground(element)), ground(element));
    if (element.matches("input, select")) found.push({ kind: "text", text: element.id, ratio: text });
    const edge = contrast(over(parts(style.borderTopColor), behind), behind);
    const inside = contrast(ground(element), behind);
    const isPlain = parts(style.borderTopColor).alpha === 0 || style.borderTopWidth === "0px";
    if (!isPlain) found.push({ kind: "control", text: element.textContent || element.id, ratio: Math.max(edge, inside) });
}
return found;
"""


class LooksOfThePage(PageTest):
    def setUp(self):
        super().setUp()
        self.simulator.must_probe("export", "create", NAME, "home", "nightly.0105", "--host", "client1")
        self.simulator.must_probe("snapshot", "create", NAME, "demo.1", "--volume", "nfs:filer1:/vol/home:/vol/home",
                                  "--target", "home", "--name", "demo", "--no-wait")
        self.simulator.probe("lsu", NAME, "missing")
        for fault in [{"operation": "openImageList", "kind": "fault", "code": 2060005, "count": 2},
                      {"operation": "listSnap", "kind": "delay", "milliseconds": 200, "sigma": 0.5},
                      {"operation": "getLSUPropByName", "kind": "cut", "count": 1}]:
            self.simulator.ask("POST", "/api/faults", fault)
        self.simulator.probe("images", NAME, "home")

    def prepare(self, title):
        """The view, with all that it can show."""
        if title == "Change lists":
            self.page.open(self.simulator.url
                           + "/#changes?server=Network_NTAP&lsu=projects&base=weekly.1&later=weekly.2")
            self.page.wait_for_text("plan.dwg")
            return
        self.page.open(self.simulator.url)
        self.page.view(title)
        if title == "Requests":
            self.page.click("button", lambda name: name.startswith("openServer, request"))
            self.page.find("region", "Reply as XML")
        elif title == "Trouble":
            self.page.wait_for_text("fault 2060005")
            self.page.type("combobox", "Operation", "nonsense")
            self.page.click("button", "Set")
            self.page.wait_for_text("There is no such operation.")
        else:
            self.page.wait_for_text({"Storage": "demo.1", "Operations": "demo.1 on home", "Events": "demo.1"}[title])

    def save_picture(self, name):
        if not PICTURES:
            return
        os.makedirs(PICTURES, exist_ok=True)
        height, width = self.page.driver.execute_script(
            "return [Math.min(document.documentElement.scrollHeight, 3000), innerWidth]")
        picture = self.page.driver.execute_cdp_cmd("Page.captureScreenshot", {
            "captureBeyondViewport": True, "clip": {"x": 0, "y": 0, "width": width, "height": height, "scale": 1}})
        with open(os.path.join(PICTURES, name + ".png"), "wb") as file:
            file.write(base64.b64decode(picture["data"]))

    def test_texts_and_controls_stand_out_and_no_view_is_wider_than_the_window(self):
        for title in VIEWS:
            self.page.set_look()
            self.prepare(title)
            for scheme, width in [("light", 2000), ("light", 1280), ("light", 400), ("dark", 400), ("dark", 1280)]:
                with self.subTest(f"{title}, {scheme}, {width}"):
                    self.page.set_look(scheme, width, motion="reduce")
                    self.page.driver.execute_script("scrollTo(0, 0)")
                    self.save_picture(f"{title.lower().replace(' ', '-')}-{scheme}-{width}")
                    self.assertLessEqual(
                        self.page.driver.execute_script("return document.documentElement.scrollWidth"), width)
                    found = self.page.driver.execute_script(CONTRASTS)
                    self.assertGreater(len(found), 20)
                    faint = [each for each in found if each["ratio"] < (4.5 if each["kind"] == "text" else 3)]
                    self.assertEqual(faint, [])

    def test_where_the_focus_is_can_be_seen(self):
        for scheme in ["light", "dark"]:
            self.page.set_look(scheme)
            self.page.tab_to("link", "Requests")
            outline = self.page.driver.execute_script(
                "const style = getComputedStyle(document.activeElement);"
                "return [style.outlineStyle, parseFloat(style.outlineWidth)]")
            self.assertEqual(outline, ["solid", 2])

    def test_one_who_wants_no_motion_gets_none(self):
        self.page.set_look(motion="reduce")
        moving = self.page.driver.execute_script(
            "return [...document.querySelectorAll('*')].filter((element) =>"
            " parseFloat(getComputedStyle(element).transitionDuration) > 0).length + document.getAnimations().length")
        self.assertEqual(moving, 0)


if __name__ == "__main__":
    unittest.main()
