"""What is stored, as people see it, and as it changes."""
import unittest

from page import PageTest
from programs import built_in_scenario

NAME = "Network_NTAP:filer1"


class StorageOnThePage(PageTest):
    NAMES = ["nightly.0105", "nightly.0106", "nightly.0107", "before-cleanup", "probe.1"]

    def home(self):
        return self.page.find("article", "LSU home")

    def snapshots(self):
        line = self.page.find("list", "Snapshots of home, oldest first")
        return [text.split()[0] for text in self.page.text(line).split("\n") if text.split()[0] in self.NAMES]

    def test_servers_lsus_images_and_snapshots_are_shown(self):
        self.assertEqual([name for name in self.page.names("heading") if name.startswith("Network_")],
                         ["Network_NTAP", "Network_VAULT"])
        self.assertEqual(self.snapshots(), ["nightly.0105", "nightly.0106", "nightly.0107", "before-cleanup"])
        self.assertEqual(len(self.page.rows("Images of home")), 3)
        text = self.page.text(self.home())
        self.assertIn("390 GiB of 1 TiB", text)
        self.assertIn("634 GiB free", text)
        self.assertIn("Network_VAULT / vault_home", text)

    def test_a_snapshot_that_a_host_makes_appears_on_the_time_line_without_a_reload(self):
        self.page.driver.execute_script("window.isSamePage = true")
        self.simulator.must_probe("snapshot", "create", NAME, "probe.1", "--volume", "nfs:filer1:/vol/home:/vol/home",
                                  "--target", "home", "--no-wait")
        self.page.until(lambda: self.snapshots()[-1] == "probe.1", "the snapshot isn't at the end of the line")
        self.assertTrue(self.page.driver.execute_script("return window.isSamePage"))

    def test_what_appeared_is_said_to_screen_readers(self):
        self.simulator.must_probe("snapshot", "create", NAME, "probe.1", "--volume", "nfs:filer1:/vol/home:/vol/home",
                                  "--target", "home", "--no-wait")
        self.page.until(lambda: "Snapshot probe.1 of Network_NTAP home is new."
                        in self.page.find("log", "What changed").get_attribute("textContent"))

    def test_a_snapshot_that_a_host_deletes_goes_from_the_time_line(self):
        self.simulator.must_probe("snapshot", "delete", NAME, "home", "before-cleanup", "--yes")
        self.page.until(lambda: "before-cleanup" not in self.snapshots(), "the snapshot is still there")

    def test_an_export_and_its_snapshot_are_told(self):
        self.simulator.must_probe("export", "create", NAME, "home", "nightly.0105", "--host", "client1")
        self.page.until(lambda: "exported" in self.page.text(self.home()))
        self.assertIn("client1", self.page.rows("Exports of Network_NTAP")[0])

    def test_what_a_server_has_none_of_is_said(self):
        text = self.page.text(self.page.find("region", "Server Network_VAULT"))
        for words in ["No exports.", "No claims.", "No sessions.", "Nothing is open.", "No snapshots.", "No images."]:
            self.assertIn(words, text)


def many_snapshots():
    scenario = built_in_scenario()
    home = scenario["servers"][0]["lsus"][0]
    home["snapshots"] = [{**home["snapshots"][0], "name": f"many.{number}"} for number in range(100)]
    return scenario


class ManySnapshotsOnThePage(PageTest):
    SCENARIO = many_snapshots()

    def test_only_the_newest_are_shown_until_more_are_asked_for(self):
        line = self.page.find("list", "Snapshots of home, oldest first")
        self.assertEqual(len(self.page.nodes("listitem", within=line)), 40)
        self.assertIn("many.99", self.page.text(line))
        self.page.click("button", "Show 40 older of 60")
        self.page.until(lambda: len(self.page.nodes("listitem", within=line)) == 80)


if __name__ == "__main__":
    unittest.main()
