#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Patchloom authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Compares the options that the completions offer with those that the program's help names, for each command.

usage: completions_test.py PROGRAM FOLDER    (the program, and the folder of the completions)

Each shell completes in earnest. A shell that is not installed is skipped.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

PROGRAM, FOLDER = pathlib.Path(sys.argv.pop(1)).resolve(), pathlib.Path(sys.argv.pop(1)).resolve()
COMMANDS = ("", "chart", "check", "convert", "describe", "list", "report", "table")
DEVICES = {"gb-spot", "gb-scan", "standard-ruler", "long-ruler"}


def run(*arguments, **more):
    # Nothing of the user's: no presets, no set-up of shells. The program is found by its name.
    with tempfile.TemporaryDirectory() as home:
        environment = {"PATH": f"{PROGRAM.parent}:{os.environ['PATH']}", "HOME": home, "LC_ALL": "C.UTF-8"}
        return subprocess.run(arguments, capture_output=True, text=True, timeout=60, env=environment, **more)


def named_in_help(command):
    """The options that a command's help names: "  -d,--device TEXT=gb-spot    ..." """
    text = run(str(PROGRAM), *command.split(), "--help").stdout
    return {option for names in re.findall(r"^  (-\S+)", text, re.MULTILINE) for option in names.split(",")}


class Completions:
    """What each shell offers for a command line; subclasses are tested."""

    def test_offer_the_options_of_each_command(self):
        for command in COMMANDS:
            with self.subTest(command or "no command"):
                expected = named_in_help(command)
                self.assertIn("--help", expected)
                offered = self.offered(f"patchloom-cli {command}".strip() + " -")
                offered |= self.offered(f"patchloom-cli {command}".strip() + " --")
                self.assertEqual(offered, expected)

    def test_offer_the_commands(self):
        named = re.findall(r"^  ([a-z]+) ", run(str(PROGRAM), "--help").stdout, re.MULTILINE)
        self.assertEqual(self.offered("patchloom-cli "), set(named))

    def test_offer_the_devices_that_the_program_lists(self):
        self.assertEqual(self.offered("patchloom-cli chart --device "), DEVICES)
        self.assertEqual(self.offered("patchloom-cli chart -d g"), {"gb-spot", "gb-scan"})

    def test_offer_the_values_of_an_option(self):
        self.assertEqual(self.offered("patchloom-cli chart --gaps a"), {"auto", "always"})
        self.assertEqual(self.offered("patchloom-cli chart --order "), {"standard", "best"})
        self.assertEqual(self.offered("patchloom-cli list "), {"devices", "papers"})


class BashTest(Completions, unittest.TestCase):
    def offered(self, line):
        return self.complete(line.split(" "))

    def complete(self, words):
        script = (f'source "{FOLDER}/patchloom-cli.bash"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); '
                  '_patchloom_cli "$1" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"; '
                  'printf "%s\\n" "${COMPREPLY[@]}"')
        done = run("bash", "--norc", "-c", script, "bash", *words)
        self.assertEqual(done.stderr, "")
        return set(done.stdout.split())

    def test_offers_values_behind_an_equals_sign(self):
        self.assertEqual(self.complete(["patchloom-cli", "chart", "--gaps", "=", "n"]), {"never"})
        self.assertEqual(self.complete(["patchloom-cli", "chart", "--gaps", "="]), {"auto", "never", "always"})

    def test_offers_devices_of_a_presets_file(self):
        with tempfile.NamedTemporaryFile("w", suffix=".toml") as presets:
            presets.write('[[device]]\nname = "Lab Table"\nscan = "none"\nreach = [46, 32]\nsmallest-patch = [6, 8]\n')
            presets.flush()
            words = ["patchloom-cli", "chart", "--presets", presets.name, "-d", "lab"]
            self.assertEqual(self.complete(words), {"lab-table"})


@unittest.skipUnless(shutil.which("fish"), "fish is not installed")
class FishTest(Completions, unittest.TestCase):
    def offered(self, line):
        script = f'source "{FOLDER}/patchloom-cli.fish"; complete -C "{line}"'
        done = run("fish", "--no-config", "-c", script)
        self.assertEqual(done.stderr, "")
        return {row.split("\t")[0] for row in done.stdout.splitlines()}


@unittest.skipUnless(shutil.which("zsh"), "zsh is not installed")
class ZshTest(Completions, unittest.TestCase):
    # zsh completes only at a prompt: one in a pseudo-terminal presses Ctrl-X, and what would be added is printed.
    SCRIPT = r"""
zmodload zsh/zpty
zpty shell zsh -f -i
zpty -w shell 'PS1=; unsetopt zle_bracketed_paste; fpath=(FOLDER $fpath); autoload -Uz compinit; compinit -u -D'
zpty -w shell 'compadd() {
    if [[ ${@[1,(i)(-|--)]} == *-(O|A|D)\ * ]]; then builtin compadd "$@"; return; fi
    typeset -a found; builtin compadd -A found "$@"; print -rl -- "offered:"${^found}":"; builtin compadd "$@" }'
zpty -w shell 'offer() { _main_complete; compstate[insert]=; compstate[list]=; print -r -- all:offered; exit }'
zpty -w shell 'zle -C offer complete-word offer; bindkey "^X" offer; print ready:for:"it"'
zpty -r -m shell all '*ready:for:it*'
zpty -w -n shell "$LINE"$'\C-X'
zpty -r -m shell all '*all:offered*'
print -r -- $all
"""

    def offered(self, line):
        done = run("zsh", "-f", "-c", f"LINE='{line}'\n" + self.SCRIPT.replace("FOLDER", str(FOLDER)))
        return set(re.findall(r"offered:([^:\r\n]+):", done.stdout))


unittest.main()
