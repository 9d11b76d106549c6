"""The page without a mouse."""
import unittest

from selenium.webdriver.common.keys import Keys

from page import VIEWS, PageTest

NAME = "Network_NTAP:filer1"


class PageByKeyboard(PageTest):
    def test_each_view_is_reached(self):
        for title in VIEWS:
            self.page.tab_to("link", title)
            self.page.press(Keys.ENTER)
            self.page.find("region", title)

    def test_the_header_can_be_skipped(self):
        self.page.tab_to("link", "Skip to the view")
        self.page.press(Keys.ENTER)
        self.page.until(lambda: self.page.focused()[0] == "main")
        self.page.find("region", "Storage")

    def test_a_trouble_is_set_and_ended(self):
        self.page.view("Trouble")
        self.page.tab_to("combobox", "Operation")
        self.page.press("openServer")
        self.page.tab_to("combobox", "Kind")
        self.page.press("HTTP")
        self.page.tab_to("textbox", "HTTP status")
        self.page.tab_to("radio", "A number of times")
        self.page.press(Keys.ARROW_RIGHT)
        self.assertEqual(self.page.focused(), ("radio", "Always"))
        self.page.press(Keys.ENTER)
        self.page.until(lambda: self.page.rows("Troubles that are set"))
        self.assertEqual(self.simulator.ask("GET", "/api/faults")["faults"][0]["kind"], "http-error")
        number = self.simulator.ask("GET", "/api/faults")["faults"][0]["number"]
        self.page.tab_to("button", f"End trouble {number}")
        self.page.press(Keys.ENTER)
        self.page.wait_for_text("No trouble is set.")

    def test_a_request_is_opened_and_closed(self):
        self.simulator.must_probe("server", NAME)
        self.page.view("Requests")
        number = self.simulator.ask("GET", "/api/requests")["last"]
        self.page.find("button", f"closeServer, request {number}")
        self.page.tab_to("button", f"closeServer, request {number}")
        self.page.press(Keys.ENTER)
        self.page.find("region", "Request as XML")
        self.page.press(Keys.ESCAPE)
        self.page.until(lambda: self.page.focused() == ("button", f"closeServer, request {number}"))

    def test_snapshots_are_compared(self):
        self.page.open(self.simulator.url + "/#changes?server=Network_NTAP&lsu=projects&base=weekly.1&later=weekly.2")
        self.page.find("region", "weekly.1 → weekly.2")
        self.page.tab_to("radio", "To weekly.2")
        self.page.press(Keys.ARROW_RIGHT)
        self.page.find("region", "weekly.1 → weekly.3")

    def test_a_dialog_keeps_the_focus_and_gives_it_back(self):
        self.page.tab_to("button", "Reset…")
        self.page.press(Keys.ENTER)
        self.page.find("dialog", "Reset to the scenario?")
        self.page.press(Keys.ESCAPE)
        self.page.wait_gone("dialog", "Reset to the scenario?")
        self.assertEqual(self.page.focused(), ("button", "Reset…"))


if __name__ == "__main__":
    unittest.main()
