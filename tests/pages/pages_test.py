#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Patchloom authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Looks at the report's pages in a headless browser, as a reader would.

usage: pages_test.py PROGRAM EXAMPLES OUTPUT

The pictures of the pages go to the folder OUTPUT.
"""

import json
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

from browser import Browser, pixels

OUTPUT = pathlib.Path(sys.argv.pop())
EXAMPLES = pathlib.Path(sys.argv.pop()).resolve()
PROGRAM = pathlib.Path(sys.argv.pop()).resolve()
WIDTHS = (360, 800, 1400)
THEMES = ("light", "dark")
# The middle of each patch of a sheet, with its label, in pixels of the page.
PLACES = """[...document.querySelectorAll('#sheet-1 [data-patch]')].map((patch) => {
    const box = patch.getBoundingClientRect();
    return [patch.dataset.patch, box.x + scrollX + box.width / 2, box.y + scrollY + box.height / 2];
})"""
HELP = "document.querySelector('#sheet-1 .patch-help').textContent"


def setUpModule():
    global folder, browser, scan, spot
    folder = tempfile.TemporaryDirectory()
    OUTPUT.mkdir(parents=True, exist_ok=True)
    scan = make("it8.7-4-cmyk.txt", "scan", "-d", "gb-scan", "-p", "a4-portrait", "--order", "best")
    spot = make("rgb-24.txt", "spot")
    browser = Browser()


def tearDownModule():
    browser.__exit__()
    folder.cleanup()


def make(table, name, *options):
    """Makes a chart with its page. Returns what the command says about it, and the page's path."""
    done = subprocess.run([PROGRAM, "chart", EXAMPLES / table, "--name", name, "--report", "--json", "-o", folder.name,
                           "--lenient", *options], capture_output=True, text=True, check=True)
    chart = json.loads(done.stdout)
    chart["page"] = pathlib.Path(folder.name, name, name + ".html")
    return chart


def text_of(selector):
    return browser.run(f"document.querySelector({json.dumps(selector)}).textContent")


def number_in(text):
    return float(re.search(r"-?[\d.]+", text.replace(",", ""))[0])


def targets(chart):
    """Label to values, as the target description has them."""
    rows = chart["page"].with_suffix(".xml").read_text().split("BEGIN_DATA\n")[1].split("END_DATA")[0]
    return {row.split("\t")[1]: row.split("\t")[3:] for row in rows.splitlines()}


class NumbersTest(unittest.TestCase):
    def test_are_those_of_the_chart(self):
        browser.open(scan["page"])
        self.assertEqual(number_in(text_of("#patches")), scan["patches"])
        self.assertEqual(number_in(text_of("#sheet-count")), scan["sheets"])
        self.assertAlmostEqual(number_in(text_of("#smallest")), scan["smallestDeltaE"], delta=0.0101)
        self.assertAlmostEqual(number_in(text_of("#percentiles tr:last-child td")), scan["bound"], delta=0.0101)
        sums = [number_in(text) for text in
                browser.run("[...document.querySelectorAll('#cells dt')].map((cell) => cell.textContent)")]
        cells = scan["columns"] * scan["rows"]
        self.assertEqual(sums, [scan["patches"], scan["fillers"], scan["hidden"], cells])
        self.assertEqual(browser.run("document.querySelectorAll('[data-patch]').length"), cells)

    def test_every_patch_has_the_values_of_the_target_description(self):
        browser.open(scan["page"])
        rows = browser.run("[...document.querySelectorAll('table.patches tbody tr')]"
                           ".map((row) => [...row.cells].slice(0, 5).map((cell) => cell.textContent))")
        self.assertEqual({row[0]: row[1:] for row in rows}, targets(scan))

    def test_every_weak_pair_leads_to_its_mark(self):
        browser.open(scan["page"])
        links = browser.run("[...document.querySelectorAll('#weakest-pairs a')].map((link) => link.hash)")
        self.assertEqual(links, [f"#weak-{rank}" for rank in range(1, 11)])
        for link in links:
            self.assertEqual(browser.run(f"document.querySelectorAll('{link}').length"), 1)

    def test_every_bar_is_counted(self):
        browser.open(scan["page"])
        counts = browser.run("[...document.querySelector('table.counts').tBodies[0].rows]"
                             ".map((row) => Number(row.cells[2].textContent.replace(',', '')))")
        self.assertEqual(sum(counts), scan["columns"] * (scan["rows"] + 1))


class PictureTest(unittest.TestCase):
    def test_each_patch_has_its_colour_at_its_place(self):
        # RGB goes through the same profile there and back: the page shows the device values.
        browser.use_size(1400, 900)
        browser.open(spot["page"])
        values = targets(spot)
        places = browser.run(PLACES)
        self.assertEqual(len(places), len(values))
        height = browser.run("document.documentElement.scrollHeight")
        _, _, channels, rows = pixels(browser.screenshot((0, 0, 1400, height)))
        for label, x, y in places:
            pixel = rows[int(y)][int(x) * channels:int(x) * channels + 3]
            for shown, value in zip(pixel, values[label]):
                self.assertAlmostEqual(shown, float(value), delta=2, msg=label)

    def test_the_first_patch_is_at_the_upper_right(self):
        browser.open(scan["page"])
        places = {label: (x, y) for label, x, y in browser.run(PLACES)}
        self.assertEqual(max(x for x, _ in places.values()), places["A1"][0])
        self.assertEqual(min(y for _, y in places.values()), places["A1"][1])
        self.assertGreater(places["A2"][1], places["A1"][1])
        self.assertLess(places["B1"][0], places["A1"][0])

    def test_every_picture_has_a_name_and_a_description(self):
        browser.open(scan["page"])
        names = browser.run("[...document.querySelectorAll('svg')].map((svg) => svg.getAttribute('role') === 'img' &&"
                            "svg.getAttribute('aria-labelledby').split(' ')"
                            ".map((id) => document.getElementById(id).textContent))")
        self.assertGreater(len(names), 6)
        for name in names:
            self.assertEqual(len([text for text in name if text.strip()]), 2, name)


class HelpTest(unittest.TestCase):
    def setUp(self):
        browser.use_size(1400, 900)
        browser.open(scan["page"])
        browser.run("document.querySelector('#sheet-1 .sheet-view').scrollIntoView()")

    def row(self, label):
        return browser.run(f"[...document.getElementById('patch-{label}').cells].map((cell) => cell.textContent)")

    def assert_shown(self, label):
        shown = browser.run("[...document.querySelectorAll('#sheet-1 .patch-help dd')].map((item) => item.textContent)")
        self.assertEqual(shown, self.row(label))

    def test_the_patch_under_the_pointer_is_shown(self):
        places = {label: (x, y) for label, x, y in browser.run(PLACES.replace("scrollX", "0").replace("scrollY", "0"))}
        for label in ("C1", "A3"):
            browser.point(*places[label])
            self.assert_shown(label)

    def test_the_keyboard_moves_from_patch_to_patch(self):
        browser.run("document.querySelector('#sheet-1 .sheet-view').focus()")
        self.assert_shown("A1")
        for key, label in (("ArrowDown", "A2"), ("ArrowLeft", "B2"), ("ArrowUp", "B1"), ("ArrowRight", "A1"),
                           ("ArrowRight", "A1"), ("ArrowUp", "A1")):
            browser.press(key)
            self.assert_shown(label)

    def test_the_keyboard_reaches_every_sheet(self):
        reached = set()
        browser.run("document.querySelector('.skip').focus()")
        for _ in range(60):
            browser.press("Tab")
            reached.add(browser.run("document.activeElement.closest('figure')?.id"))
        for number in range(1, scan["sheets"] + 1):
            self.assertIn(f"sheet-{number}", reached)

    def test_a_row_has_the_differences_to_both_neighbours(self):
        row = self.row("A2")
        self.assertRegex(row[8], r"^\d+\.\d\d to A1$")
        self.assertRegex(row[9], r"^\d+\.\d\d to A3$")
        self.assertRegex(self.row("A1")[8], r"to paper$")

    def test_a_link_to_a_patch_shows_it(self):
        browser.run("location.hash = '#patch-A5'")
        browser.run("new Promise((done) => setTimeout(done, 100))")
        self.assert_shown("A5")
        self.assertTrue(browser.run("document.querySelector('#sheet-1 details').open"))


class GuideTest(unittest.TestCase):
    def test_the_picture_of_the_guide_can_be_taken(self):
        page = pathlib.Path(folder.name, "preview.html")
        subprocess.run([PROGRAM, "report", EXAMPLES / "it8.7-4-cmyk.txt", "-d", "gb-scan", "-p", "a3-landscape", "-o",
                        page], check=True)
        browser.use_size(1100, 1000)
        browser.open(page)
        browser.run(f"document.querySelector('#sheet-1 [data-patch=J12]').dispatchEvent("
                    f"new PointerEvent('pointerover', {{bubbles: true}}))")
        self.assertIn("J12", browser.run(HELP))
        (OUTPUT / "report.png").write_bytes(browser.screenshot((0, 0, 1100, 1420), 0.7))


class PageTest(unittest.TestCase):
    def test_needs_nothing_but_itself(self):
        for chart in (scan, spot):
            browser.open(chart["page"])
            self.assertEqual(browser.requested(), [chart["page"].resolve().as_uri()])
            self.assertEqual(browser.logged(), [])
            self.assertEqual(browser.run("document.documentElement.dataset.ready"), "yes")

    def test_nothing_from_outside_can_be_loaded(self):
        page = pathlib.Path(folder.name, "image.html")
        page.write_text(scan["page"].read_text().replace("<main ", "<img src='http://patchloom.example/x.png'><main ", 1))
        browser.open(page)
        self.assertIn("Content Security Policy", " ".join(browser.logged()))

    def test_fits_every_width_in_both_themes(self):
        for name, chart in (("scan", scan), ("spot", spot)):
            grounds = set()
            for theme in THEMES:
                browser.use_theme(theme)
                for width in WIDTHS:
                    with self.subTest(f"{name} {theme} {width}"):
                        browser.use_size(width, 900)
                        browser.open(chart["page"])
                        self.assertLessEqual(browser.run("document.documentElement.scrollWidth"), width)
                        height = browser.run("document.documentElement.scrollHeight")
                        picture = browser.screenshot((0, 0, width, min(height, 12000)))
                        (OUTPUT / f"{name} {theme} {width}.png").write_bytes(picture)
                grounds.add(browser.run("getComputedStyle(document.body).backgroundColor"))
            self.assertEqual(len(grounds), 2)
        browser.use_theme("light")

    def test_patches_keep_their_colours_in_the_dark(self):
        fills = []
        for theme in THEMES:
            browser.use_theme(theme)
            browser.open(spot["page"])
            fills.append(browser.run("[...document.querySelectorAll('[data-patch]')]"
                                     ".map((patch) => getComputedStyle(patch).fill)"))
        browser.use_theme("light")
        self.assertEqual(fills[0], fills[1])

    def test_can_be_read_without_scripts(self):
        browser.ask("Emulation.setScriptExecutionDisabled", value=True)
        try:
            browser.open(scan["page"])
            browser.use_size(1400, 900)
            self.assertEqual(browser.run("getComputedStyle(document.querySelector('.patch-help')).display"), "none")
            self.assertEqual(browser.run("document.querySelectorAll('table.patches').length"), scan["sheets"])
        finally:
            browser.ask("Emulation.setScriptExecutionDisabled", value=False)

    def test_prints_on_a4(self):
        for chart in (scan, spot):
            browser.open(chart["page"])
            pdf = browser.print()
            (OUTPUT / (chart["name"] + ".pdf")).write_bytes(pdf)
            boxes = re.findall(rb"/MediaBox\s*\[\s*0 0 ([\d.]+) ([\d.]+)\s*\]", pdf)
            self.assertGreater(len(boxes), 2)
            self.assertLess(len(boxes), 15)
            for width, height in boxes:
                self.assertAlmostEqual(float(width), 210 / 25.4 * 72, delta=1)
                self.assertAlmostEqual(float(height), 297 / 25.4 * 72, delta=1)


class HostileNameTest(unittest.TestCase):
    def test_a_name_is_only_shown(self):
        name = "<script>document.title = 1<&\"' <img src=x onerror=alert(1)> caf\u00e9"
        page = pathlib.Path(folder.name, "hostile.html")
        subprocess.run([PROGRAM, "report", EXAMPLES / "rgb-24.txt", "--lenient", "--name", name, "-o", page], check=True)
        browser.open(page)
        self.assertEqual(text_of("h1"), name)
        self.assertEqual(browser.run("document.title"), name + " \u2013 Chart report")
        self.assertEqual(browser.run("document.querySelectorAll('script, img').length"), 1)
        self.assertEqual(browser.logged(), [])


class MeasuredPageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        make("rgb-cube-897.txt", "Cube", "-d", "gb-scan")
        cls.page = pathlib.Path(folder.name, "measured.html")
        # The page shows the file's name as it is given.
        done = subprocess.run([PROGRAM, "check", pathlib.Path(folder.name, "Cube"),
                               f"{EXAMPLES.name}/rgb-cube-897-measured.txt", "--json", "--report", cls.page],
                              capture_output=True, text=True, cwd=EXAMPLES.parent)
        cls.findings = json.loads(done.stdout)["findings"]

    def test_every_finding_leads_to_its_mark(self):
        browser.open(self.page)
        links = browser.run("[...document.querySelectorAll('table a')].map((link) => link.hash)"
                            ".filter((hash) => hash.startsWith('#finding'))")
        self.assertEqual([finding["kind"] for finding in self.findings], ["reversed", "shifted", "patch"])
        self.assertEqual(len(links), 3)
        for link in links:
            self.assertEqual(browser.run(f"document.querySelectorAll('{link}').length"), 1)
        for finding in self.findings:
            self.assertIn(finding["text"], text_of("main"))

    def test_needs_nothing_from_outside_and_fits_small_screens(self):
        for theme in THEMES:
            browser.use_theme(theme)
            for width in WIDTHS:
                browser.use_size(width, 900)
                browser.open(self.page)
                self.assertEqual(browser.run("document.documentElement.scrollWidth"), width)
                self.assertEqual(browser.logged(), [])
        browser.use_theme("light")

    def test_the_picture_of_the_guide_can_be_taken(self):
        browser.use_size(1100, 1000)
        browser.open(self.page)
        browser.run("document.querySelector('#sheet-1 [data-patch=F3]').dispatchEvent("
                    "new PointerEvent('pointerover', {bubbles: true}))")
        self.assertIn("F3", browser.run(HELP))
        (OUTPUT / "check.png").write_bytes(browser.screenshot((0, 0, 1100, 1560), 0.7))


unittest.main()
