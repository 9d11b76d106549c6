"""Names that look like markup, or like nothing at all."""
import unittest
import urllib.parse

from page import VIEWS, PageTest
from programs import built_in_scenario, volume

MARKUP = "<img src=x onerror=\"window.isMarkup=1\"><script>window.isMarkup=1</script>'\"&lt;"
CONTROLS = "tab\t turned\u202e hidden\u200b end"
SEEN_CONTROLS = "tab\u2409 turned\\u202e hidden\\u200b end"
LONG = "x" * 2000


def hostile_scenario():
    scenario = built_in_scenario()
    scenario["servers"][0]["lsus"][0].update(
        label=MARKUP[:60], description=CONTROLS,
        snapshots=[{"name": name, "volume": volume("/vol/" + name)} for name in [MARKUP, CONTROLS, LONG]],
        images=[{"basename": MARKUP, "policy": CONTROLS}, {"basename": LONG}])
    scenario["servers"][0]["lsus"].append({
        "name": MARKUP, "snapshots": [
            {"name": "one", "volume": {"ndmp": {"exportfiler": MARKUP, "exportpath": "/a"}}, "files": []},
            {"name": "two", "volume": {"ndmp": {"exportfiler": MARKUP, "exportpath": "/b"}},
             "files": [{"path": "<b>bold"}, {"path": LONG[:200] + "/" + CONTROLS.replace("/", "")}]}]})
    return scenario


class HostileTextsOnThePage(PageTest):
    SCENARIO = hostile_scenario()

    def assert_no_markup(self):
        self.assertEqual(self.page.driver.execute_script(
            "return [window.isMarkup ?? null, document.images.length, document.scripts.length,"
            " document.querySelectorAll('b').length]"), [None, 0, 1, 0])

    def test_they_never_become_markup(self):
        self.page.wait_for_text("<script>window.isMarkup=1</script>")
        for title in VIEWS:
            self.page.view(title)
            self.assert_no_markup()
        self.page.open(self.simulator.url + "/#changes?" + urllib.parse.urlencode(
            {"server": "Network_NTAP", "lsu": MARKUP, "base": "one", "later": "two"}))
        self.page.wait_for_text("<b>bold")
        self.assert_no_markup()

    def test_neither_do_those_of_clients(self):
        # A fault's text would repeat the name of what is unknown.
        self.simulator.probe("lsu", "Network_NTAP:filer1", MARKUP)
        self.simulator.post_soap(f"<?xml version='1.0'?><!-- {MARKUP} --><a {MARKUP}>{MARKUP}<![CDATA[{MARKUP}]]>".encode())
        self.page.view("Requests")
        for operation in ["getLSUPropByName", "-"]:
            self.page.click("button", lambda name, operation=operation: name.startswith(operation + ", request"))
            self.page.find("region", "Request as XML")
            self.page.wait_for_text("window.isMarkup")
            self.assert_no_markup()

    def test_control_characters_are_seen(self):
        self.page.wait_for_text(SEEN_CONTROLS)
        self.simulator.post_soap(b"<?xml version='1.0'?><a>bell\x07 escape\x1b</a>")
        self.page.view("Requests")
        self.page.click("button", lambda name: name.startswith("-, request"))
        self.page.wait_for_text("bell\u2407 escape\u241b")

    def test_long_names_dont_widen_the_page(self):
        for width in [400, 1280]:
            self.page.set_look(width=width)
            for title in VIEWS:
                self.page.view(title)
                with self.subTest(f"{title} at {width}"):
                    self.assertLessEqual(
                        self.page.driver.execute_script("return document.documentElement.scrollWidth"), width)


if __name__ == "__main__":
    unittest.main()
