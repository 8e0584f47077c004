#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Patchloom authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the package of the command, unpacked with the common one alone.

usage: command_package_test.py FOLDER    (the folder of the packages)
"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

PACKAGES = pathlib.Path(sys.argv.pop(1))
WINDOW = ("qt", "libgl", "opengl", "libx11")


def package(name):
    """The one file of a package."""
    (found,) = PACKAGES.glob(name + "_*.deb")
    return str(found)


def run(*arguments):
    return subprocess.run(arguments, capture_output=True, text=True, timeout=60)


class CommandPackageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.root = pathlib.Path(cls.folder.name, "root")
        for name in ("patchloom-cli", "patchloom-common"):
            subprocess.run(["dpkg", "-x", package(name), cls.root], check=True)
        cls.program = str(cls.root / "usr/bin/patchloom-cli")

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def test_depends_on_no_part_of_the_window(self):
        depends = run("dpkg-deb", "--field", package("patchloom-cli"), "Depends").stdout.lower()
        self.assertIn("liblcms2-2", depends)
        for name in WINDOW:
            self.assertNotIn(name, depends)

    def test_needs_the_common_package_of_the_same_version(self):
        version = run("dpkg-deb", "--field", package("patchloom-cli"), "Version").stdout.strip()
        self.assertIn(f"patchloom-common (= {version})",
                      run("dpkg-deb", "--field", package("patchloom-cli"), "Depends").stdout)
        self.assertEqual(run("dpkg-deb", "--field", package("patchloom-common"), "Version").stdout.strip(), version)

    def test_links_to_no_part_of_the_window(self):
        libraries = run("ldd", self.program).stdout.lower()
        self.assertIn("liblcms2", libraries)
        for name in WINDOW:
            self.assertNotIn(name, libraries)

    def test_shares_no_file_with_another_package(self):
        owners = {}
        for deb in sorted(PACKAGES.glob("*.deb")):
            for line in run("dpkg-deb", "--contents", str(deb)).stdout.splitlines():
                name = line.split(maxsplit=5)[5].split(" -> ")[0]
                if not name.endswith("/"):
                    owners.setdefault(name, []).append(deb.name)
        self.assertIn("./usr/bin/patchloom-cli", owners)
        self.assertEqual({name: debs for name, debs in owners.items() if len(debs) > 1}, {})

    def test_makes_a_chart_from_anywhere(self):
        table = self.root / "usr/share/doc/patchloom/examples/rgb-24.txt"
        made = run("env", "-i", "-C", "/", self.program, "chart", table, "-d", "gb-scan", "-f", "eps,tiff",
                   "-o", self.folder.name)
        self.assertEqual((made.stderr, made.returncode), ("", 0))
        # With its profiles the program sees that these colours differ; without them, all are black.
        self.assertNotIn(" 0.00 dE", made.stdout)
        self.assertEqual(sorted(file.name for file in pathlib.Path(self.folder.name, "rgb-24").iterdir()),
                         ["rgb-24.xml", "rgb-24_001.eps", "rgb-24_001.tif"])

    def test_has_manual_and_completions(self):
        for name in ("man/man1/patchloom-cli.1.gz", "bash-completion/completions/patchloom-cli",
                     "zsh/vendor-completions/_patchloom-cli", "fish/vendor_completions.d/patchloom-cli.fish",
                     "doc/patchloom/docs/guide.md"):
            self.assertTrue((self.root / "usr/share" / name).is_file(), name)


unittest.main()
