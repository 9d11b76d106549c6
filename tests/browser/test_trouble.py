"""The form that brings about troubles, and the list of those that are set."""
import unittest

from page import PageTest

NAME = "Network_NTAP:filer1"
TABLE = "Troubles that are set"


class TroubleOnThePage(PageTest):
    def setUp(self):
        super().setUp()
        self.page.view("Trouble")

    def set(self, operation, kind, **fields):
        self.page.type("combobox", "Operation", operation)
        self.page.choose("Kind", kind)
        for name, text in fields.items():
            field = name.replace("_", " ")
            self.page.until(lambda field=field: self.field(field))
            self.field(field).clear()
            self.field(field).send_keys(text)
        self.page.click("button", "Set")

    def field(self, start):
        def fits(name):
            return name.lower().startswith(start)
        return self.page.first("textbox", fits) or self.page.first("combobox", fits)

    def rows(self):
        return [" ".join(row.split()) for row in self.page.rows(TABLE)]

    def test_a_fault_of_one_time_fails_the_host_once_and_is_then_used_up(self):
        self.set("openServer", "SOAP fault", error_code="2069004", number="1")
        self.page.until(lambda: any("fault 2069004" in row for row in self.rows()))
        code, text = self.simulator.probe("server", NAME)
        self.assertEqual(code, 4)
        self.assertIn("2069004", text)
        self.page.until(lambda: not self.rows() or any("used up" in row for row in self.rows()))
        self.simulator.must_probe("server", NAME)

    def test_each_kind_can_be_set(self):
        kinds = {
            "SOAP fault": ({"error_code": "-7"}, {"kind": "fault", "code": -7}),
            "Delay, fixed": ({"milliseconds": "30"}, {"kind": "delay", "milliseconds": 30}),
            "Delay, long-tailed": ({"median": "20", "spread": "0.4"}, {"kind": "delay", "milliseconds": 20, "sigma": 0.4}),
            "Dribble": ({"milliseconds": "40"}, {"kind": "dribble", "milliseconds": 40}),
            "Cut": ({}, {"kind": "cut"}),
            "Empty": ({}, {"kind": "empty"}),
            "Garbage": ({}, {"kind": "garbage"}),
            "Malformed chunk": ({}, {"kind": "malformed-chunk"}),
            "HTTP error": ({"http_status": "502"}, {"kind": "http-error", "status": 502}),
            "Reset": ({}, {"kind": "reset"}),
        }
        for number, (kind, (fields, _)) in enumerate(kinds.items()):
            self.set("listLSU", kind, **fields)
            self.page.until(lambda number=number: len(self.rows()) == number + 1, f"{kind} isn't in the list")
        told = self.simulator.ask("GET", "/api/faults")["faults"]
        for (kind, (_, expected)), fault in zip(kinds.items(), told):
            with self.subTest(kind):
                self.assertEqual({name: fault[name] for name in expected}, expected)
                self.assertEqual(fault["operation"], "listLSU")

    def test_it_shows_only_the_fields_of_the_kind(self):
        self.page.choose("Kind", "Cut")
        self.page.until(lambda: not self.field("error code"))
        self.page.choose("Kind", "HTTP error")
        self.page.until(lambda: self.field("http status"))
        self.assertFalse(self.field("milliseconds"))

    def test_what_is_wrong_is_said_beside_the_field(self):
        for operation, kind, fields, words in [
            ("", "Cut", {}, "An operation is needed."),
            ("openServers", "Cut", {}, "There is no such operation."),
            ("openServer", "HTTP error", {"http_status": "200"}, "A number from 400 to 599."),
            ("openServer", "Delay, fixed", {"milliseconds": "3600001"}, "A whole number from 0 to 3600000"),
            ("openServer", "Delay, long-tailed", {"spread": "0"}, "A number above 0, up to 10."),
            ("openServer", "SOAP fault", {"error_code": "busy"}, "A whole number of 32 bits"),
            ("openServer", "Cut", {"number": "0"}, "A whole number from 1 on."),
        ]:
            with self.subTest(words):
                self.set(operation, kind, **fields)
                self.page.wait_for_text(words)
                self.assertEqual(self.page.driver.switch_to.active_element.get_attribute("aria-invalid"), "true")
                self.page.type("combobox", "Operation", "openServer")
        self.assertEqual(self.simulator.ask("GET", "/api/faults")["faults"], [])

    def test_one_that_is_set_for_good_ends_by_its_button(self):
        self.page.click("radio", "Always")
        self.set("openServer", "SOAP fault", error_code="2060005")
        self.page.until(lambda: any("always" in row for row in self.rows()))
        number = self.simulator.ask("GET", "/api/faults")["faults"][0]["number"]
        self.page.click("button", f"End trouble {number}")
        self.page.wait_for_text("No trouble is set.")
        self.simulator.must_probe("server", NAME)

    def test_hits_are_counted_as_they_happen(self):
        self.page.click("radio", "Always")
        self.set("openServer", "SOAP fault", error_code="2069004")
        self.page.until(self.rows)
        for hits in ["1", "2"]:
            self.simulator.probe("server", NAME)
            self.page.until(lambda hits=hits: f" {hits} always" in self.rows()[0])

    def test_what_an_operation_does_is_told_where_it_is_chosen(self):
        told = {entry["name"]: entry["text"] for entry in self.simulator.ask("GET", "/api/contract")["operations"]}
        self.assertIn("openServer", told)
        self.page.type("combobox", "Operation", "openServer")
        self.assertNotEqual(told["openServer"], "")
        self.page.wait_for_text(told["openServer"])


if __name__ == "__main__":
    unittest.main()
