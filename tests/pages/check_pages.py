#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Patchloom authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks the report's pages by an HTML validator, an accessibility checker and a clock.

usage: check_pages.py PROGRAM EXAMPLES MODULES

MODULES is the folder node_modules that has html-validate and axe-core. See ./dev check-pages.
"""

import pathlib
import subprocess
import sys
import tempfile
import time

from browser import Browser

PROGRAM, EXAMPLES, MODULES = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
CHARTS = {
    "scan": ("it8.7-4-cmyk.txt", "-d", "gb-scan", "-p", "a3-landscape", "--order", "best"),
    "gaps": ("it8.7-4-cmyk.txt", "-d", "standard-ruler", "--gaps", "always"),
    "spot": ("rgb-24.txt",),
}


def make_pages(folder):
    pages = []
    for name, (table, *options) in CHARTS.items():
        pages.append(folder / (name + ".html"))
        subprocess.run([PROGRAM, "report", EXAMPLES / table, *options, "-o", pages[-1]], check=True)
    subprocess.run([PROGRAM, "chart", EXAMPLES / "rgb-cube-897.txt", "-d", "gb-scan", "-o", folder, "-q"], check=True)
    pages.append(folder / "measured.html")
    subprocess.run([PROGRAM, "check", folder / "rgb-cube-897", EXAMPLES / "rgb-cube-897-measured.txt", "--report",
                    pages[-1]], stdout=subprocess.DEVNULL)
    return pages


def drawing_time(browser, page):
    """Milliseconds until the page is drawn: the best of some times, since the machine may have other work."""
    browser.use_size(1400, 900)
    times = []
    for _ in range(4):
        browser.open(page)
        times.append(browser.run("new Promise((done) => requestAnimationFrame(() => setTimeout(() => "
                                 "done(performance.now()), 0)))"))
    return min(times)


def validate(folder, pages):
    (folder / ".htmlvalidate.json").write_text('{"root": true, "extends": ["html-validate:standard"]}')
    done = subprocess.run([MODULES / ".bin/html-validate", *pages], cwd=folder)
    return done.returncode == 0


def violations(browser, page, checker):
    for width in (360, 1400):
        for theme in ("light", "dark"):
            browser.use_size(width, 900)
            browser.use_theme(theme)
            browser.open(page)
            browser.run(checker + ";0")
            found = browser.run("axe.run(document, {resultTypes: ['violations']}).then((result) => result.violations"
                                ".map((one) => one.id + ': ' + one.help + ': ' + one.nodes[0].html.slice(0, 200)))")
            for text in found:
                yield f"{page.name}, {theme}, {width} pixels: {text}"


def main():
    with tempfile.TemporaryDirectory() as name, Browser() as browser:
        folder = pathlib.Path(name)
        pages = make_pages(folder)
        good = validate(folder, pages)
        print("html-validate:", "no faults" if good else "faults")
        checker = (MODULES / "axe-core/axe.min.js").read_text()
        start = time.monotonic()
        found = [text for page in pages for text in violations(browser, page, checker)]
        print("\n".join(found) if found else f"axe-core: no violations ({time.monotonic() - start:.0f} s)")
        slowest = max(drawing_time(browser, page) for page in pages)
        print(f"drawn within {slowest:.0f} ms (at most 1000)")
        sys.exit(bool(found) or not good or slowest > 1000)


main()
