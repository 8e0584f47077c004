#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Patchloom authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Compares the options that manual and reference explain with those that the program's help names.

usage: options_test.py TREE PROGRAM
"""

import pathlib
import re
import subprocess
import sys
import unittest

TREE, PROGRAM = pathlib.Path(sys.argv.pop(1)), sys.argv.pop(1)
COMMANDS = ("chart", "convert", "describe", "list", "table")
# The manual and the reference explain the options of these commands together.
TOGETHER = {"--scale", "--space", "--table"}
OF_ALL = {"-h", "--help"}


def named_in_help(command):
    text = subprocess.run([PROGRAM, command, "--help"], capture_output=True, text=True).stdout
    return {option for names in re.findall(r"^  (-\S+)", text, re.MULTILINE) for option in names.split(",")} - OF_ALL


def explained_alone(command):
    """The options that are explained with this command only. All of table's are."""
    return named_in_help(command) - (set() if command == "table" else TOGETHER)


def sections(text, heading):
    """What follows each heading, up to the next."""
    parts = re.split(heading, text, flags=re.MULTILINE)
    return dict(zip(parts[1::2], parts[2::2]))


class OptionsTest(unittest.TestCase):
    def test_the_manual_has_an_entry_for_each(self):
        manual = (TREE / "res/patchloom-cli.1").read_text().replace("\\-", "-").replace("\\fI", " ")
        texts = sections(manual, r"^\.S[SH] (.*)$")
        entries = {}
        for name, text in texts.items():
            heads = " ".join(re.findall(r"^\.T[PQ]\n(.*)", text, re.MULTILINE))
            entries[name] = set(re.findall(r"(?<!\S)(--?[a-z]+(?:-[a-z]+)*)\b", heads))
        self.assertEqual(entries["chart, convert and describe"], TOGETHER)
        for command in COMMANDS:
            with self.subTest(command):
                self.assertEqual(entries[command], explained_alone(command))

    def test_the_reference_has_a_row_for_each(self):
        reference = (TREE / "docs/reference.md").read_text().split("\n## The command\n")[1].split("\n## ")[0]
        texts = sections(reference, r"^\| ([a-z, ]+) \| Default \| Meaning \|$")
        rows = {name: {option for row in re.findall(r"^\| (`-.*?) \|", text, re.MULTILINE)
                       for option in re.findall(r"`(--?[a-z]+(?:-[a-z]+)*)", row)} for name, text in texts.items()}
        self.assertEqual(rows["chart, convert, describe"], TOGETHER)
        for command in ("chart", "convert", "table"):
            with self.subTest(command):
                self.assertEqual(rows[command], explained_alone(command))
        for command in ("describe", "list"):
            with self.subTest(command):
                (sentence,) = re.findall(rf"`{command}` takes (`.*?)[.,](?:\s|$)", reference)
                self.assertEqual(set(re.findall(r"--[a-z-]+", sentence)), named_in_help(command) - TOGETHER)


unittest.main()
