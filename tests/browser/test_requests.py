"""What was asked and answered, as it comes."""
import time
import unittest

from selenium.webdriver.common.action_chains import ActionChains

from page import PageTest
from programs import CREDENTIAL, Load, traces_of_credential

NAME = "Network_NTAP:filer1"
TABLE = "Requests, newest first"
UNKNOWN_SESSION = b"""<?xml version="1.0" encoding="UTF-8"?>
<SOAP-ENV:Envelope xmlns:SOAP-ENV="http://schemas.xmlsoap.org/soap/envelope/" xmlns:ns1="urn:tarnholme:psvws">
<SOAP-ENV:Body><ns1:getServerProp><sh><token>unknown</token></sh></ns1:getServerProp></SOAP-ENV:Body></SOAP-ENV:Envelope>"""


class RequestsOnThePage(PageTest):
    def setUp(self):
        super().setUp()
        self.page.view("Requests")

    def open_request(self, operation):
        self.page.click("button", lambda name: name.startswith(operation + ", request"))
        return self.page.find("region", "Chosen request")

    def test_without_any_it_says_so(self):
        self.page.wait_for_text("No requests yet.")

    def test_requests_of_a_host_appear_newest_first(self):
        self.simulator.must_probe("server", NAME)
        self.page.until(lambda: any("closeServer" in row for row in self.page.rows(TABLE)))
        rows = self.page.rows(TABLE)
        places = [next(i for i, row in enumerate(rows) if name in row) for name in ["closeServer", "openServer"]]
        self.assertEqual(places, sorted(places))

    def test_a_chosen_request_shows_what_was_asked_and_answered_side_by_side(self):
        self.simulator.must_probe("server", NAME)
        detail = self.open_request("openServer")
        self.page.until(lambda: "openServer" in self.page.text(self.page.find("region", "Request as XML", detail)))
        request, reply = (self.page.find("region", name, detail) for name in ["Request as XML", "Reply as XML"])
        self.assertIn("Network_NTAP:filer1", self.page.text(request))
        self.assertIn("openServerResponse", self.page.text(reply))
        self.assertLess(request.rect["x"], reply.rect["x"])
        self.assertAlmostEqual(request.rect["y"], reply.rect["y"], delta=1)

    def test_nothing_in_the_document_tells_the_credential(self):
        self.simulator.probe("server", NAME, credential=CREDENTIAL + "x")
        self.simulator.must_probe("server", NAME)
        self.page.until(lambda: any("closeServer" in row for row in self.page.rows(TABLE)))
        self.open_request("openServer")
        self.page.wait_for_text("openServerResponse")
        document = self.page.driver.execute_script("return document.documentElement.outerHTML + document.body.innerText")
        for trace in traces_of_credential():
            self.assertNotIn(trace, document)

    def test_closing_it_goes_back_to_its_row(self):
        self.simulator.must_probe("server", NAME)
        detail = self.open_request("openServer")
        self.page.click("button", "Close", within=detail)
        self.page.wait_gone("region", "Chosen request")
        role, name = self.page.focused()
        self.assertEqual(role, "button")
        self.assertTrue(name.startswith("openServer, request"), name)

    def test_the_search_keeps_what_it_finds(self):
        self.simulator.must_probe("server", NAME)
        self.page.until(lambda: len(self.page.rows(TABLE)) >= 4)
        self.page.type("searchbox", "Search", "closeserver")
        self.page.until(lambda: len(self.page.rows(TABLE)) == 1)
        self.page.type("searchbox", "Search", "no such thing")
        self.page.wait_for_text("No request matches.")

    def test_failures_can_be_shown_alone(self):
        self.simulator.must_probe("snapshots", NAME, "home")  # a list, which ends by a fault as each of them does
        self.simulator.probe("lsu", NAME, "missing")
        self.page.click("checkbox", "Only failures")
        self.page.until(lambda: [row for row in self.page.rows(TABLE) if "2069005" in row])
        self.assertEqual(len(self.page.rows(TABLE)), 1)

    def test_clear_forgets_them(self):
        self.simulator.must_probe("server", NAME)
        self.page.until(lambda: self.page.rows(TABLE))
        self.page.click("button", "Clear")
        self.page.wait_for_text("No requests yet.")
        self.assertEqual(self.simulator.ask("GET", "/api/requests")["requests"], [])
        self.simulator.must_probe("server", NAME)
        self.page.until(lambda: self.page.rows(TABLE))

    def test_they_can_be_saved(self):
        link = self.page.find("link", "Save as HAR")
        self.assertTrue(link.get_attribute("href").endswith("/api/report"))

    def test_a_thousand_a_second_leave_the_page_usable(self):
        with Load(self.simulator, 1000, UNKNOWN_SESSION) as load:
            self.page.until(lambda: load.sent.qsize() > 500)
            before = time.monotonic()
            ActionChains(self.page.driver).move_to_element(self.page.find("region", "List of requests")).perform()
            self.page.wait_for_text("Held while you point at the list")
            self.open_request("getServerProp")
            self.page.click("link", "Trouble", within=self.page.find("navigation", "Views"))
            self.page.find("heading", "Set a trouble")
            self.page.view("Requests")
            took = time.monotonic() - before
            rows = self.page.driver.execute_script("return document.querySelectorAll('tr').length")
            longest = self.page.driver.execute_async_script("""
                const tell = arguments[0];
                let last = performance.now(), longest = 0, frames = 0;
                const frame = (now) => {
                    longest = Math.max(longest, now - last);
                    last = now;
                    frames += 1;
                    if (frames < 30) requestAnimationFrame(frame); else tell(longest);
                };
                requestAnimationFrame(frame);""")
        self.assertLess(took, 30)
        self.assertLess(rows, 260)
        self.assertLess(longest, 3000)

    def test_all_of_the_last_thousand_can_be_had_after_a_storm(self):
        with Load(self.simulator, 1000, UNKNOWN_SESSION) as load:
            self.page.until(lambda: load.sent.qsize() > 1200)
        self.page.wait_for_text("1,000 requests")
        for shown in [400, 600]:
            self.page.click("button", lambda name: name.startswith("Show 200 more"))
            self.page.until(lambda shown=shown: len(self.page.nodes("row")) > shown)


if __name__ == "__main__":
    unittest.main()
