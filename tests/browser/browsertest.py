"""What the tests of the phone's page share: a demo host on sample data, browsers, and what a mechanic does."""
import json
import os
import pathlib
import shutil
import sqlite3
import subprocess
import tempfile
import threading
import unittest

from selenium import webdriver
from selenium.common.exceptions import StaleElementReferenceException
from selenium.webdriver.common.by import By
from selenium.webdriver.support.ui import WebDriverWait

HOST = os.environ["GARAGE_HOST"]
WINDOW_HOST = os.environ["WINDOW_HOST"]
PATIENCE = 30  # seconds until a condition counts as never met; the machine may be busy
CODES = ("4001", "4002")  # of the first two people of the sample data


class SampleHome:
    """A data folder with the sample data, generated once for all tests of the program."""

    _template = None

    def __init__(self):
        if SampleHome._template is None:
            SampleHome._template = tempfile.TemporaryDirectory(prefix="garage-browser-")
            subprocess.run(at_fixed_time([HOST, "--due", "--home", SampleHome._template.name]), check=True,
                           stdout=subprocess.DEVNULL, env=headless())
        self._folder = tempfile.TemporaryDirectory(prefix="garage-browser-")
        self.path = pathlib.Path(self._folder.name)
        shutil.copytree(SampleHome._template.name, self.path, dirs_exist_ok=True)
        self.database = next(self.path.rglob("ruvalo.sqlite"))

    def remove(self):
        self._folder.cleanup()

    def change(self, statement, *values):
        with sqlite3.connect(self.database) as connection:
            connection.execute(statement, values)
        connection.close()

    def rows(self, statement, *values):
        connection = sqlite3.connect(self.database, timeout=PATIENCE)
        try:
            return connection.execute(statement, values).fetchall()
        finally:
            connection.close()


def at_fixed_time(command):
    """The command under a clock that stands still, for pictures."""
    if "FAKE_TIME" not in os.environ:
        return command
    return ["faketime", "--exclude-monotonic", "-f", os.environ["FAKE_TIME"], *command]


def headless():
    kept = {name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
    return kept | {"QT_QPA_PLATFORM": "offscreen"}


class WindowHost:
    """The demo host with its window and its web server, driven through standard input (windowhost.cpp)."""

    def __init__(self, home):
        self.process = subprocess.Popen(at_fixed_time([WINDOW_HOST, str(home.path)]), stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, text=True, env=headless())
        self._lock = threading.Lock()
        self.url = self._read()["url"]

    def _read(self):
        line = self.process.stdout.readline()
        if not line:
            raise AssertionError(f"the host ended with {self.process.wait()}")
        return json.loads(line)

    def do(self, what, **values):
        with self._lock:
            print(json.dumps({"do": what, **values}), file=self.process.stdin, flush=True)
            answer = self._read()
        if "error" in answer:
            raise AssertionError(f"{what}: {answer['error']}")
        return answer

    def rows(self, view):
        """The rows that a table of the garage window shows, as texts with the cells joined by "|"."""
        return self.do("rows", view=view)["rows"]

    def end(self):
        self.process.stdin.close()
        self.process.stdout.close()
        return self.process.wait(PATIENCE)


def start_browser(language="ru-RU,ru"):
    options = webdriver.ChromeOptions()
    for argument in ("--headless=new", "--disable-gpu", "--no-first-run", "--disable-background-networking",
                     "--disable-component-update", "--disable-sync", "--hide-scrollbars"):
        options.add_argument(argument)
    if os.geteuid() == 0:
        options.add_argument("--no-sandbox")  # which does not work for root
    options.add_experimental_option("prefs", {"intl.accept_languages": language})
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    return webdriver.Chrome(options=options)


class Phone:
    """A browser of the size of a phone with the page in it."""

    def __init__(self, url, language="ru-RU,ru", size=(390, 844)):
        self.url = url
        self.driver = start_browser(language)
        self.driver.set_script_timeout(PATIENCE)
        self.resize(*size)
        self.driver.get(url)

    def close(self):
        self.driver.quit()

    def resize(self, width, height, dark=False):
        self.command("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1,
                     mobile=False)
        self.command("Emulation.setEmulatedMedia", features=[
            {"name": "prefers-color-scheme", "value": "dark" if dark else "light"}])

    def command(self, name, **values):
        return self.driver.execute_cdp_cmd(name, values)

    def script(self, code, *values):
        return self.driver.execute_script(code, *values)

    def until(self, condition, what):
        """Waits until the condition holds and returns its value."""
        wait = WebDriverWait(self.driver, PATIENCE, 0.05, (StaleElementReferenceException,))
        return wait.until(lambda _: condition(), f"waited for: {what}")

    def find(self, selector):
        return self.driver.find_element(By.CSS_SELECTOR, selector)

    def all(self, selector):
        return self.driver.find_elements(By.CSS_SELECTOR, selector)

    def text(self, selector):
        return self.script("return document.querySelector(arguments[0])?.innerText ?? ''", selector)

    def is_shown(self, selector):
        return self.script("return Boolean(document.querySelector(arguments[0])?.checkVisibility())", selector)

    def press(self, selector):
        self.script("document.querySelector(arguments[0]).scrollIntoView({block: 'center'})", selector)
        self.find(selector).click()

    # What a mechanic does

    def enter_code(self, code):
        self.until(lambda: self.is_shown("#code"), "the form for the code")
        field = self.find("#code")
        field.clear()
        field.send_keys(code)
        self.press("#sign-in-button")

    def sign_in(self, code=CODES[0]):
        self.enter_code(code)
        self.until(self.is_online, "the connection after signing in")
        return self

    def open(self, place):
        self.press(f'nav a[data-place="{place}"]')
        self.until(lambda: self.is_shown(f"#{place}"), place)

    def is_online(self):
        return self.script("return document.getElementById('connection').dataset.is") == "online"

    def connection(self):
        return self.text("#connection")

    def due(self):
        """The lines of the due list, in the order shown."""
        return self.script("""return [...document.querySelectorAll('#due-list .work')].map(line => ({
            kart: line.closest('.card').querySelector('.plate').textContent,
            model: line.closest('.card').querySelector('.model').textContent,
            op: line.querySelector('.name').textContent,
            kind: line.querySelector('.chip').hidden ? 'due' : line.querySelector('.chip').textContent,
            when: line.querySelector('.when').textContent,
            meters: [...line.querySelectorAll('.meter')].map(meter => meter.textContent)}))""")

    def due_keys(self):
        return [(line["kart"], line["op"]) for line in self.due()]

    def first_due(self, kind="due"):
        self.until(lambda: any(line["kind"] == kind for line in self.due()), f"a line of kind {kind}")
        line = next(line for line in self.due() if line["kind"] == kind)
        return line["kart"], line["op"]

    def open_work(self, kart, op):
        button = self.script("""return [...document.querySelectorAll('#due-list .work')].find(line =>
            line.closest('.card').querySelector('.plate').textContent === arguments[0]
            && line.querySelector('.name').textContent === arguments[1]).querySelector('button')""", kart, op)
        self.script("arguments[0].scrollIntoView({block: 'center'})", button)
        button.click()
        self.until(lambda: self.is_shown("#work"), "the dialog")

    def note(self):
        return self.find("#note").get_property("value")

    def tick(self, kart, op, note=""):
        self.open_work(kart, op)
        field = self.find("#note")
        field.clear()
        field.send_keys(note)
        self.press("#work-confirm")
        self.until(lambda: not self.is_shown("#work"), "the end of the dialog")

    def done(self):
        """The lines of the list of work done today, latest first."""
        return self.script("""return [...document.querySelectorAll('#done-list .record')].map(line => ({
            kart: line.querySelector('.plate').textContent, op: line.querySelector('.name').textContent,
            state: line.querySelector('.chip').textContent, who: line.querySelector('.who').textContent,
            note: line.querySelector('.note').textContent, why: line.querySelector('.why').textContent}))""")

    def state_of(self, note):
        return next((line["state"] for line in self.done() if line["note"] == note), None)

    def await_state(self, note, state):
        self.until(lambda: self.state_of(note) == state, f"{note!r} as {state!r}, not {self.done()[:3]}")

    def karts(self):
        """Whether each kart is shown as in work, by its number."""
        return dict(self.script("""return [...document.querySelectorAll('#kart-list button')].map(button => [
            button.querySelector('.plate').textContent, button.getAttribute('aria-checked') === 'true'])"""))

    def press_kart(self, number):
        button = self.script("""return [...document.querySelectorAll('#kart-list button')].find(button =>
            button.querySelector('.plate').textContent === arguments[0])""", number)
        self.script("arguments[0].scrollIntoView({block: 'center'})", button)
        button.click()

    def kept(self):
        """The works that the browser's storage holds."""
        return self.script("""return Object.keys(localStorage).filter(name => name.startsWith('garage.work.'))
            .map(name => JSON.parse(localStorage.getItem(name)))""")

    def set_network(self, is_there):
        self.driver.set_network_conditions(offline=not is_there, latency=0, throughput=-1)
        # The browser's event depends on the machine's network, which stays.
        self.command("Network.emulateNetworkConditions", offline=not is_there, latency=0,
                     downloadThroughput=-1, uploadThroughput=-1)

    def errors(self):
        """What the browser complains about, but for answers that the page handles."""
        return [entry["message"] for entry in self.driver.get_log("browser")
                if entry["level"] == "SEVERE" and entry["source"] != "network"]


class HostTest(unittest.TestCase):
    """A class of tests with one running host."""

    @classmethod
    def setUpClass(cls):
        cls.home = SampleHome()
        cls.addClassCleanup(cls.home.remove)
        cls.prepare()
        cls.host = WindowHost(cls.home)
        cls.addClassCleanup(cls.host.end)

    @classmethod
    def prepare(cls):
        """Changes the database before the host starts."""

    def phone(self, **options):
        phone = Phone(self.host.url, **options)
        self.addCleanup(phone.close)
        self.addCleanup(lambda: self.assertEqual(phone.errors(), []))
        return phone

    def stored(self, note):
        """The service records of the track's database with that note."""
        return self.home.rows("SELECT id,car_id,operation_id,operation_time,person_name,operation_state,remote_id "
                              "FROM maintainance WHERE comment=?", note)

    def car_id(self, number):
        return self.home.rows("SELECT id FROM cars WHERE num=?", number)[0][0]
