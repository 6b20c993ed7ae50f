#!/usr/bin/env python3
"""The pages of `tqbin report` in a browser: complete in themselves, and fit to be used.

usage: report_test.py TQBIN DATA_DIRECTORY

Each page is opened from its file in headless Chromium, at the widths of a telephone, a
tablet and a screen, light and dark.  It must ask for nothing but itself, leave nothing
on the console, fit the width, be readable and usable by keyboard, and show the numbers of
the model.
"""

import json
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

WIDTHS = (390, 820, 1400)
EVIL = "'\"><script>document.title=1</script><img src=http://localhost:9/x><b>\u202e&lt;"
RUNS = {
    "census": ("supervised", "adult_train.csv", "--target", "income-per-year"),
    "iris": ("supervised", "iris.csv", "--target", "species"),
    "even": ("equal-frequency", "adult_train.csv", "--bins", "1000"),
    "weighted": ("supervised", "german_credit.csv", "--target", "credit", "--weight", "age"),
    "countries": ("supervised", "adult_train.csv", "--target", "native-country",
                  "--attribute", "age"),
}

# What is wrong with the page's structure: a list of complaints.
COMPLAINTS = """
const wrong = [], all = selector => [...document.querySelectorAll(selector)];
const ids = all('[id]').map(e => e.id);
if (new Set(ids).size !== ids.length) wrong.push('an id occurs twice');
for (const e of all('[aria-labelledby]'))
  for (const id of e.getAttribute('aria-labelledby').split(' '))
    if (!document.getElementById(id)?.textContent.trim()) wrong.push('no label ' + id);
for (const a of all('a')) if (!document.querySelector(a.getAttribute('href')))
  wrong.push('a link leads nowhere: ' + a.href);
for (const t of all('table')) if (!t.caption?.textContent) wrong.push('no caption');
for (const th of all('th')) if (!th.scope) wrong.push('a heading without scope');
for (const tr of all('tr')) if (tr.cells.length !== tr.closest('table').rows[0].cells.length)
  wrong.push('a row of another length: ' + tr.textContent);
for (const name of ['h1', 'main', 'header', 'nav', 'footer'])
  if (all(name).length !== 1) wrong.push(all(name).length + ' ' + name);
let level = 0;
for (const h of all('h1, h2, h3')) {
  if (+h.tagName[1] > level + 1) wrong.push('a heading level is left out: ' + h.textContent);
  level = +h.tagName[1];
}
for (const svg of all('svg.chart')) {
  const box = svg.getBoundingClientRect();
  if (box.width < 250 || box.height < 150) wrong.push('a small chart');
  if (!svg.querySelector('.bar').getBBox().width) wrong.push('a chart without bars');
  if (!svg.querySelector(':scope > title, :scope > desc').textContent) wrong.push('untitled');
}
if (document.scripts.length || all('img, link, iframe, object').length)
  wrong.push('a foreign element');
const width = document.documentElement.scrollWidth;
if (width > innerWidth) wrong.push('wider than the window: ' + width + ' > ' + innerWidth);
return wrong;
"""

# The lowest contrast between a text and the page's ground, with the text.
LOWEST_CONTRAST = """
const light = colour => {
  const [r, g, b] = colour.match(/[\\d.]+/g).map(Number).map(c => c / 255)
    .map(c => c <= 0.04045 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4);
  return 0.2126 * r + 0.7152 * g + 0.0722 * b;
};
const ground = light(getComputedStyle(document.body).backgroundColor);
let lowest = [99, ''];
for (const e of document.querySelectorAll('h1, p, a, dt, dd, th, td, .soft, .state, text')) {
  const style = getComputedStyle(e), ink = light(e.closest('svg') ? style.fill : style.color);
  const contrast = (Math.max(ink, ground) + 0.05) / (Math.min(ink, ground) + 0.05);
  if (contrast < lowest[0]) lowest = [contrast, e.textContent];
}
return lowest;
"""

BIN_ROWS = """
return [...document.querySelectorAll('section.attribute')].map(s =>
  [s.querySelector('h3').textContent, [...s.querySelectorAll('tbody tr')].map(
    tr => [...tr.cells].map(c => c.textContent))]);
"""


def browser():
    options = webdriver.ChromeOptions()
    for argument in ("--headless=new", "--no-sandbox", "--disable-gpu",
                     "--disable-dev-shm-usage"):
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
    return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)


class Report(unittest.TestCase):
    """One browser looks at all pages."""

    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.folder = Path(cls.scratch.name)
        for name, (method, file, *options) in RUNS.items():
            cls.tool(method, str(DATA / file), *options, "--format", "json",
                     "-o", f"{cls.folder}/{name}.json")
        cls.write_made_up_models()
        for model in cls.folder.glob("*.json"):
            cls.tool("report", str(model), "-o", str(model.with_suffix(".html")))
        cls.browser = browser()

    @classmethod
    def tearDownClass(cls):
        cls.browser.quit()
        cls.scratch.cleanup()

    @staticmethod
    def tool(*arguments):
        subprocess.run([TOOL, *arguments], check=True, stderr=subprocess.DEVNULL)

    @classmethod
    def model(cls, name):
        return json.loads((cls.folder / f"{name}.json").read_text())

    @classmethod
    def write_made_up_models(cls):
        """Names that mean mischief, and as many attributes as anybody has."""
        evil, many = cls.model("iris"), cls.model("iris")
        evil["input"]["names"] = [EVIL]
        evil["targets"][0]["name"] = EVIL
        evil["targets"][0]["categories"] = [EVIL + str(c) for c in range(3)]
        for number, attribute in enumerate(evil["attributes"]):
            attribute["name"] = EVIL + str(number)
            attribute["target"] = EVIL
            attribute["labels"] = [f"{EVIL}{b}" for b in range(len(attribute["bins"]))]
        many["attributes"] = [{**many["attributes"][n % 4], "name": f"column_{n}"}
                              for n in range(1000)]
        for name, model in (("evil", evil), ("many", many)):
            (cls.folder / f"{name}.json").write_text(json.dumps(model))

    def look(self, width=1400, scheme="light"):
        self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": 900, "deviceScaleFactor": 1, "mobile": False})
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "features": [{"name": "prefers-color-scheme", "value": scheme}]})

    def open(self, name):
        self.look()
        self.browser.get((self.folder / f"{name}.html").as_uri())

    def requests(self):
        """What was asked for since the last call."""
        messages = (json.loads(entry["message"])["message"]
                    for entry in self.browser.get_log("performance"))
        return [message["params"]["request"]["url"] for message in messages
                if message["method"] == "Network.requestWillBeSent"]

    def test_pages_are_complete_in_themselves_and_well_formed(self):
        for name in (*RUNS, "evil"):
            self.requests()
            self.open(name)
            for width in WIDTHS:
                for scheme in ("light", "dark"):
                    with self.subTest(page=name, width=width, scheme=scheme):
                        self.look(width, scheme)
                        self.assertEqual([], self.browser.execute_script(COMPLAINTS))
            with self.subTest(page=name):
                self.assertEqual([], self.browser.get_log("browser"))
                self.assertEqual([(self.folder / f"{name}.html").as_uri()], self.requests())

    def test_every_cut_attribute_has_a_chart(self):
        for name in (*RUNS, "evil", "many"):
            with self.subTest(page=name):
                self.open(name)
                attributes = self.model(name)["attributes"]
                self.assertEqual(
                    [len(attributes), sum(bool(a["cuts"]) for a in attributes)],
                    self.browser.execute_script(
                        "return ['section.attribute', 'svg.chart[role=img]'].map("
                        "s => document.querySelectorAll(s).length)"))

    def test_tables_hold_the_counts_of_the_model(self):
        for name in ("census", "iris", "even", "weighted"):
            self.open(name)
            shown = dict(self.browser.execute_script(BIN_ROWS))
            for attribute in self.model(name)["attributes"]:
                with self.subTest(page=name, attribute=attribute["name"]):
                    self.assertEqual(
                        [f"{b['weight']:,.0f}" for b in attribute["bins"]],
                        [row[1] for row in shown[attribute["name"]]])

    def test_overview_ranks_by_information_gain(self):
        self.open("census")
        gains = self.browser.execute_script(
            "return [...document.querySelectorAll('.overview .ranking')]"
            ".map(c => parseFloat(c.textContent))")
        self.assertEqual(5, len(gains))
        self.assertEqual(sorted(gains, reverse=True), gains)

    def test_names_from_data_are_text(self):
        self.open("evil")
        self.assertTrue(self.browser.title.startswith(EVIL[:20]))
        names = [row[0] for row in self.browser.execute_script(BIN_ROWS)]
        self.assertCountEqual([EVIL + str(n) for n in range(4)], names)

    def test_texts_stand_out_from_the_ground(self):
        self.open("census")
        grounds = set()
        for scheme in ("light", "dark"):
            with self.subTest(scheme=scheme):
                self.look(scheme=scheme)
                contrast, text = self.browser.execute_script(LOWEST_CONTRAST)
                self.assertGreaterEqual(contrast, 4.5, text)
                grounds.add(self.browser.execute_script(
                    "return getComputedStyle(document.body).backgroundColor"))
        self.assertEqual(2, len(grounds))

    def test_keyboard_skips_to_the_results_and_follows_the_overview(self):
        self.open("census")
        body = self.browser.find_element(By.TAG_NAME, "body")
        body.send_keys(Keys.TAB)
        skip = self.browser.switch_to.active_element
        self.assertEqual("skip", skip.get_attribute("class"))
        self.assertGreaterEqual(skip.rect["x"], 0)
        skip.send_keys(Keys.ENTER)
        self.assertTrue(self.browser.current_url.endswith("#main"))
        link = self.browser.find_element(By.CSS_SELECTOR, ".overview a")
        link.send_keys(Keys.ENTER)
        heading = self.browser.find_element(By.CSS_SELECTOR, ":target h3")
        self.assertEqual(link.text, heading.text)

    def test_print_shows_whole_tables_on_white(self):
        self.open("even")
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "media": "print", "features": [{"name": "prefers-color-scheme", "value": "dark"}]})
        ground, hidden = self.browser.execute_script(
            "return [getComputedStyle(document.body).backgroundColor,"
            " [...document.querySelectorAll('.scroll')]"
            ".filter(e => e.scrollHeight > e.clientHeight).length]")
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"media": ""})
        self.assertEqual("rgb(253, 253, 251)", ground)
        self.assertEqual(0, hidden)


if __name__ == "__main__":
    TOOL, DATA = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
    unittest.main(argv=sys.argv[:1])
