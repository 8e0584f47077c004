#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Patchloom authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs the commands of the user's guide, in its order, in a folder that holds the examples.

usage: guide_test.py TREE PROGRAM

An indented line is a command. It has to end with 0, or with the status that it is marked with:

    patchloom-cli chart again.txt        # exit status 1

What is fenced by ``` is a file if it begins with a line "# NAME", and else what the command before it prints.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

TREE, PROGRAM = pathlib.Path(sys.argv.pop(1)), pathlib.Path(sys.argv.pop(1)).resolve()
CHAPTERS = ("From nothing", "Your table", "Charts without a window", "Check the measurement")
FENCED_OR_COMMAND = re.compile(r"^```\n((?:.*\n)*?)```$|^ {4}(?: {2})?(\S.*)$", re.MULTILINE)
MARK = re.compile(r"# exit status (\d+)$")


def chapter(name):
    guide = (TREE / "docs/guide.md").read_text()
    return guide.split(f"\n## {name}\n")[1].split("\n## ")[0]


class GuideTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        shutil.copytree(TREE / "examples", self.folder / "examples")

    def run_command(self, command):
        environment = {"PATH": f"{PROGRAM.parent}:{os.environ['PATH']}", "HOME": str(self.folder)}
        return subprocess.run(["bash", "-c", command], cwd=self.folder, env=environment, capture_output=True, text=True)

    def test_commands_do_what_it_says(self):
        for name in CHAPTERS:
            printed, commands = "", 0
            for fenced, command in FENCED_OR_COMMAND.findall(chapter(name)):
                with self.subTest(command or fenced):
                    if command:
                        done = self.run_command(command)
                        mark = MARK.search(command)
                        self.assertEqual(done.returncode, int(mark[1]) if mark else 0, done.stderr)
                        # Findings are no errors: they are what check prints.
                        has_errors = mark is not None and not command.startswith("patchloom-cli check ")
                        self.assertEqual(done.stderr != "", has_errors, done.stderr)
                        printed, commands = done.stdout, commands + 1
                    elif file := re.match(r"# (\S+)\n", fenced):
                        (self.folder / file[1]).write_text(fenced)
                    else:
                        self.assertEqual(printed, fenced)
            self.assertGreater(commands, 3, name)


unittest.main()
