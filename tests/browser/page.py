"""The page in a browser, found by what a person is told of it: roles, names and texts."""
import atexit
import os
import unittest

from selenium import webdriver
from selenium.common.exceptions import (ElementClickInterceptedException, ElementNotInteractableException,
                                        JavascriptException, StaleElementReferenceException, WebDriverException)
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import Select, WebDriverWait

from programs import PATIENCE, Simulator

VIEWS = ["Storage", "Operations", "Events", "Requests", "Trouble", "Change lists"]
# What befalls a test whose page changes under its hands.
PASSING = [ElementClickInterceptedException, ElementNotInteractableException, JavascriptException,
           StaleElementReferenceException, IndexError]
_browser = None


def browser():
    """One for all tests."""
    global _browser
    if _browser is None:
        os.environ["NO_PROXY"] = "*"
        options = Options()
        options.binary_location = os.environ["CHROMIUM_PROGRAM"]
        for argument in ["--headless=new", "--no-sandbox", "--disable-dev-shm-usage", "--disable-gpu",
                         "--no-proxy-server", "--disable-background-networking", "--no-first-run"]:
            options.add_argument(argument)
        _browser = webdriver.Chrome(service=Service(os.environ["CHROMEDRIVER_PROGRAM"]), options=options)
        _browser.set_script_timeout(PATIENCE)
        atexit.register(_browser.quit)
    return _browser


class Page:
    def __init__(self):
        self.driver = browser()

    def open(self, url):
        self.driver.get("about:blank")
        self.driver.get(url)

    def until(self, condition, message=""):
        """What the condition gives, once it is true. An element may go while it is looked at."""
        wait = WebDriverWait(self.driver, PATIENCE, 0.05, PASSING)
        return wait.until(lambda _: condition(), message)

    # The browser's own accessibility tree knows the roles and the names. An element is handed over by a variable.
    def _object(self, element):
        self.driver.execute_script("window.handedOver = arguments[0] || document.documentElement", element)
        answer = self.driver.execute_cdp_cmd("Runtime.evaluate", {"expression": "window.handedOver"})
        return answer["result"]["objectId"]

    def _element(self, node):
        resolved = self.driver.execute_cdp_cmd("DOM.resolveNode", {"backendNodeId": node["backendDOMNodeId"]})
        self.driver.execute_cdp_cmd("Runtime.callFunctionOn", {
            "objectId": resolved["object"]["objectId"], "functionDeclaration": "function() { window.handedOver = this; }"})
        return self.driver.execute_script("return window.handedOver")

    def nodes(self, role, name=None, within=None):
        """`name` is a whole one, or a function that says whether it fits."""
        query = {"objectId": self._object(within), "role": role}
        if isinstance(name, str):
            query["accessibleName"] = name
        found = self.driver.execute_cdp_cmd("Accessibility.queryAXTree", query)["nodes"]
        return [node for node in found if not node["ignored"]
                and (not callable(name) or name(node.get("name", {}).get("value", "")))]

    def all(self, role, name=None, within=None, most=None):
        try:
            return [self._element(node) for node in self.nodes(role, name, within)[:most]]
        except WebDriverException:  # gone meanwhile
            raise StaleElementReferenceException() from None

    def first(self, role, name=None, within=None):
        return next(iter(self.all(role, name, within, 1)), None)

    def names(self, role, within=None):
        return [node.get("name", {}).get("value", "") for node in self.nodes(role, None, within)]

    def find(self, role, name=None, within=None):
        return self.until(lambda: self.first(role, name, within), f"there is no {role} named {name}")

    def wait_gone(self, role, name, within=None):
        self.until(lambda: not self.nodes(role, name, within), f"there still is a {role} named {name}")

    def click(self, role, name, within=None):
        self.until(lambda: self._clicked(role, name, within), f"there is no {role} named {name} to click")

    def _clicked(self, role, name, within):
        element = self.first(role, name, within)
        if element is not None:
            element.click()
        return element is not None

    def text(self, element=None):
        return (element or self.driver.find_element(By.TAG_NAME, "body")).text

    def wait_for_text(self, text, element=None):
        self.until(lambda: text in self.text(element), f"“{text}” isn't shown")

    def view(self, title):
        """Goes there by its tab, and gives the view."""
        self.click("link", title, within=self.find("navigation", "Views"))
        return self.find("region", title)

    def type(self, role, name, text, within=None):
        element = self.find(role, name, within)
        element.clear()
        element.send_keys(text)

    def choose(self, name, option):
        select = Select(self.find("combobox", name))
        self.until(lambda: option in [each.text for each in select.options], f"“{option}” isn't to be chosen")
        select.select_by_visible_text(option)

    def rows(self, table):
        """The texts of a table's rows, without the head; none if there is no such table."""
        element = self.first("table", table)
        if element is None:
            return []
        return self.driver.execute_script("return [...arguments[0].rows].slice(1).map((row) => row.innerText)", element)

    def press(self, *keys):
        self.driver.switch_to.active_element.send_keys(*keys)

    def focused(self):
        element = self.driver.switch_to.active_element
        return element.aria_role, element.accessible_name

    def tab_to(self, role, name, most=80):
        """Presses Tab until this has the focus."""
        for _ in range(most):
            self.press(Keys.TAB)
            found_role, found_name = self.focused()
            if found_role == role and found_name == name:
                return
        raise AssertionError(f"Tab doesn't lead to the {role} named {name}")

    def set_look(self, scheme="light", width=1280, height=900, motion="no-preference"):
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [
            {"name": "prefers-color-scheme", "value": scheme}, {"name": "prefers-reduced-motion", "value": motion}]})
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride",
                                    {"width": width, "height": height, "deviceScaleFactor": 1, "mobile": False})


class PageTest(unittest.TestCase):
    """A test that has a simulator and the page open in the browser."""

    SCENARIO = None
    OPTIONS = ()

    def setUp(self):
        self.simulator = self.start()
        self.page = Page()
        self.page.set_look()
        self.page.open(self.simulator.url)
        self.page.wait_for_text("Connected")

    def start(self, port=0):
        simulator = Simulator(self.SCENARIO, port, self.OPTIONS)
        self.addCleanup(lambda: simulator.process.poll() is None and simulator.stop())
        return simulator
