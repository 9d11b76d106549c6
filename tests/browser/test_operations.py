"""Long operations, events and change lists."""
import unittest

from page import PageTest
from programs import built_in_scenario

NAME = "Network_NTAP:filer1"
VOLUME = "nfs:filer1:/vol/home:/vol/home"
OPERATIONS = "Long operations, newest first"
EVENTS = "Events of Network_NTAP, newest first"


def slow_scenario():
    return {**built_in_scenario(), "operations": {"seconds": {"create": 600}}}


class SlowOperationsOnThePage(PageTest):
    SCENARIO = slow_scenario()

    def test_one_that_runs_shows_its_progress_and_can_be_cancelled(self):
        self.page.view("Operations")
        self.page.wait_for_text("No operations yet.")
        self.simulator.must_probe("snapshot", "create", NAME, "probe.1", "--volume", VOLUME, "--target", "home",
                                  "--name", "nightly", "--no-wait")
        self.page.until(lambda: any("running" in row and "nightly" in row for row in self.page.rows(OPERATIONS)))
        self.assertEqual(len(self.page.nodes("progressbar")), 1)
        number = self.simulator.ask("GET", "/api/operations")["operations"][0]["number"]
        self.page.click("button", f"Cancel operation {number}")
        self.page.until(lambda: "cancelled" in self.page.rows(OPERATIONS)[0])
        self.page.wait_gone("button", f"Cancel operation {number}")
        self.assertEqual(self.simulator.ask("GET", "/api/operations")["operations"][0]["state"], "cancelled")

    def test_progress_is_seen_without_anybody_asking(self):
        self.simulator.must_probe("snapshot", "create", NAME, "probe.1", "--volume", VOLUME, "--target", "home", "--no-wait")
        self.page.view("Operations")
        bar = self.page.find("progressbar")
        first = float(bar.get_attribute("value"))
        self.page.until(lambda: float(bar.get_attribute("value")) > first)


def quick_scenario():
    return {**built_in_scenario(), "operations": {"seconds": {"create": 1}}}


class OperationsOnThePage(PageTest):
    SCENARIO = quick_scenario()

    def test_one_that_has_ended_shows_its_result(self):
        self.page.view("Operations")
        self.simulator.must_probe("snapshot", "create", NAME, "probe.1", "--volume", VOLUME, "--target", "home")
        self.page.until(lambda: any("done" in row and "probe.1" in row for row in self.page.rows(OPERATIONS)))

    def test_one_that_ends_while_nobody_asks_shows_its_snapshot(self):
        self.simulator.must_probe("snapshot", "create", NAME, "probe.1", "--volume", VOLUME, "--target", "home", "--no-wait")
        self.page.until(lambda: "probe.1" in self.page.text(self.page.find("article", "LSU home")))


class EventsOnThePage(PageTest):
    def test_what_happens_appears_in_the_log_at_once(self):
        self.page.view("Events")
        self.simulator.must_probe("snapshot", "delete", NAME, "home", "before-cleanup", "--yes")
        self.page.until(lambda: any("before-cleanup" in row for row in self.page.rows(EVENTS)))
        self.assertIn("before-cleanup", self.page.rows(EVENTS)[0])

    def test_a_kind_or_a_server_can_be_shown_alone(self):
        self.simulator.must_probe("snapshot", "delete", NAME, "home", "before-cleanup", "--yes")
        self.page.view("Events")
        self.page.choose("Kind", "activity")
        self.page.until(lambda: len(self.page.rows(EVENTS)) == 1)
        self.page.choose("Kind", "image-info")
        self.page.wait_for_text("No events of the kind “image-info”.")
        self.page.choose("Kind", "server-status")
        self.page.until(lambda: "server is up" in self.page.rows(EVENTS)[0])
        self.page.choose("Server", "Network_VAULT")
        self.page.wait_gone("table", EVENTS)
        self.assertEqual(len(self.page.rows("Events of Network_VAULT, newest first")), 1)

    def test_what_an_event_holds_can_be_opened(self):
        self.simulator.must_probe("snapshot", "delete", NAME, "home", "before-cleanup", "--yes")
        self.page.view("Events")
        self.page.choose("Kind", "activity")
        self.page.until(lambda: len(self.page.rows(EVENTS)) == 1)
        self.page.driver.find_element("xpath", "//summary").click()
        self.page.wait_for_text('"snapshot"')


class ChangeListsOnThePage(PageTest):
    def test_what_differs_between_two_snapshots_is_a_tree(self):
        self.page.view("Change lists")
        self.page.choose("LSU", "Network_NTAP / projects")
        self.page.click("radio", "From weekly.1")
        self.page.click("radio", "To weekly.2")
        result = self.page.find("region", "weekly.1 → weekly.2")
        for words in ["plan.dwg", "Längsschnitt.pdf", "created", "old notes.txt", "deleted", "changed", "210 KiB"]:
            self.page.wait_for_text(words, result)
        self.assertNotIn("survey.txt", self.page.text(result))

    def test_a_directory_of_the_tree_closes_and_opens(self):
        self.page.open(self.simulator.url + "/#changes?server=Network_NTAP&lsu=projects&base=weekly.1&later=weekly.2")
        self.page.wait_for_text("plan.dwg")
        bridge = self.page.driver.find_element("xpath", "//summary[contains(., 'bridge')]")
        bridge.click()
        self.page.until(lambda: "plan.dwg" not in self.page.text())
        bridge.click()
        self.page.wait_for_text("plan.dwg")

    def test_from_nothing_all_is_created(self):
        self.page.open(self.simulator.url + "/#changes?server=Network_NTAP&lsu=projects&base=weekly.1&later=weekly.2")
        self.page.wait_for_text("plan.dwg")
        self.page.click("radio", lambda name: name.startswith("From nothing"))
        result = self.page.find("region", "All of weekly.2")
        self.page.wait_for_text("survey.txt", result)
        self.assertIn("6 created", self.page.text(result))
        self.assertNotIn("deleted", self.page.text(result))

    def test_the_storage_view_leads_to_an_lsu(self):
        self.page.click("link", "Compare snapshots of projects")
        self.page.find("region", "weekly.2 → weekly.3")


if __name__ == "__main__":
    unittest.main()
