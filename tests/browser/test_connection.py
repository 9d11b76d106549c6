"""A simulator that goes and comes back, a reset, another scenario."""
import json
import unittest

from page import PageTest
from programs import Simulator, volume

NAME = "Network_NTAP:filer1"
OTHER = {"servers": [{"prefix": "Other_SERVER", "lsus": [
    {"name": "elsewhere", "volumes": [volume("/vol/elsewhere")],
     "snapshots": [{"name": "first", "volume": volume("/vol/elsewhere")}]}]}]}


class ConnectionOfThePage(PageTest):
    def restart(self, scenario):
        simulator = Simulator(scenario, self.simulator.port)
        self.addCleanup(simulator.stop)
        return simulator

    def test_a_stopped_simulator_is_told_and_a_restarted_one_found_again(self):
        self.page.find("article", "LSU home")
        self.simulator.stop()
        self.page.wait_for_text("The simulator doesn't answer; trying again")
        self.assertIn("nightly.0105", self.page.text())
        self.restart(OTHER)
        self.page.find("article", "LSU elsewhere")
        self.page.wait_gone("alert", lambda name: True)
        self.page.wait_for_text("Connected")
        self.assertNotIn("nightly.0105", self.page.text())

    def test_requests_of_a_simulator_before_arent_mixed_with_those_of_the_next(self):
        self.page.view("Requests")
        self.simulator.must_probe("server", NAME)
        self.page.click("button", lambda name: name.startswith("closeServer, request"))
        self.page.find("region", "Chosen request")
        self.simulator.stop()
        self.page.wait_for_text("The simulator doesn't answer")
        self.restart(OTHER)
        self.page.wait_for_text("No requests yet.")
        self.page.wait_gone("region", "Chosen request")

    def test_a_release_a_scenario_and_addresses_are_told(self):
        header = self.page.find("banner")
        state = self.simulator.ask("GET", "/api/state")
        for words in [state["release"], "built-in", self.simulator.url]:
            self.page.wait_for_text(words, header)

    def test_a_reset_asks_first(self):
        self.simulator.must_probe("snapshot", "delete", NAME, "home", "before-cleanup", "--yes")
        self.page.until(lambda: "before-cleanup" not in self.page.text())
        self.page.click("button", "Reset…")
        self.page.click("button", "Cancel", within=self.page.find("dialog", "Reset to the scenario?"))
        self.page.wait_gone("dialog", "Reset to the scenario?")
        self.assertNotIn("before-cleanup", self.page.text())
        self.page.click("button", "Reset…")
        self.page.click("button", "Reset", within=self.page.find("dialog", "Reset to the scenario?"))
        self.page.wait_for_text("before-cleanup")
        self.page.wait_gone("dialog", "Reset to the scenario?")

    def test_a_scenario_file_is_loaded(self):
        file = self.simulator.file("other.json", json.dumps(OTHER))
        self.page.click("button", "Load scenario…")
        dialog = self.page.find("dialog", "Load a scenario")
        self.page.find("button", lambda name: name.startswith("Scenario file"), within=dialog).send_keys(file)
        self.page.click("button", "Load", within=dialog)
        self.page.find("article", "LSU elsewhere")
        self.page.wait_gone("article", "LSU home")

    def test_what_is_wrong_with_a_scenario_file_is_said(self):
        for text, words in [('{"servers": [{"prefix": 7}]}', "servers[0].prefix"), ("{", "line 1")]:
            with self.subTest(words):
                file = self.simulator.file("wrong.json", text)
                self.page.click("button", "Load scenario…")
                dialog = self.page.find("dialog", "Load a scenario")
                self.page.find("button", lambda name: name.startswith("Scenario file"), within=dialog).send_keys(file)
                self.page.click("button", "Load", within=dialog)
                self.page.wait_for_text(words, dialog)
                self.page.click("button", "Cancel", within=dialog)
                self.page.find("article", "LSU home")


if __name__ == "__main__":
    unittest.main()
