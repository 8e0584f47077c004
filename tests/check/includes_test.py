#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Patchloom authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests of tools/check/includes.py on small trees."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECK = pathlib.Path(__file__).resolve().parents[2] / "tools/check/includes.py"

# Two rooms on the ground, two beside each other above them.
GOOD_TREE = {
    "ARCHITECTURE.md": "| Ring | Room | Library | Contents |\n"
                       "|---|---|---|---|\n"
                       "| 1 | `src/lib/` | `base` | texts |\n"
                       "| 2 | `src/input/` | `core` | readers |\n"
                       "| 2 | `src/output/` | `core` | writers |\n"
                       "| 3 | `src/window/` | `gui` | the window |\n",
    "src/lib/CMakeLists.txt": "room(base)\n",
    "src/lib/Text.h": "#pragma once\n#include <string>\n",
    "src/lib/Text.cpp": '#include "Text.h"\n',
    "src/input/CMakeLists.txt": "room(core)\n",
    "src/input/Reader.h": '#include "lib/Text.h"\n',
    "src/output/CMakeLists.txt": "room(core)\n",
    "src/output/Writer.h": '#include "Text.h"\n',
    "src/window/CMakeLists.txt": "# The window.\nadd_library(gui STATIC\n    Window.h)\nadd_executable(program)\n",
    "src/window/Window.h": '#include "output/Writer.h"\n#include <QWidget>\n',
}


class IncludesTest(unittest.TestCase):
    def run_check(self, changed):
        """The faults that the check names in the good tree with some files changed or added."""
        with tempfile.TemporaryDirectory() as folder:
            for name, text in {**GOOD_TREE, **changed}.items():
                path = pathlib.Path(folder, name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text)
            done = subprocess.run([sys.executable, CHECK, folder], capture_output=True, text=True)
        self.assertEqual(done.stderr, "")
        lines = done.stdout.splitlines()
        self.assertEqual(done.returncode, 0 if "no include leaves its ring" in lines[0] else 1)
        return [] if done.returncode == 0 else lines

    def test_finds_nothing_in_a_good_tree(self):
        self.assertEqual(self.run_check({}), [])

    def test_finds_an_include_of_a_ring_above(self):
        for name in ("output/Writer.h", "Writer.h", "../output/Writer.h"):
            with self.subTest(name):
                self.assertEqual(self.run_check({"src/lib/Lines.cpp": f'#include "Text.h"\n#include "{name}"\n',
                                                 "src/output/Writer.h": ""}),
                                 ["src/lib/Lines.cpp:2: includes src/output/Writer.h: "
                                  "src/lib may include only rings below its own."])

    def test_finds_a_source_that_does_not_begin_with_its_own_header(self):
        for text in ("#include <string>\n#include \"Text.h\"\n", "int length;\n"):
            with self.subTest(text):
                self.assertEqual(self.run_check({"src/lib/Text.cpp": text}),
                                 ["src/lib/Text.cpp:1: includes something before src/lib/Text.h."])

    def test_finds_an_include_of_another_room_of_the_same_ring(self):
        self.assertEqual(self.run_check({"src/input/Rows.cpp": "  #  include <output/Writer.h>\n"}),
                         ["src/input/Rows.cpp:1: includes src/output/Writer.h: "
                          "src/input may include only rings below its own."])

    def test_finds_a_circle_within_a_room(self):
        faults = self.run_check({"src/lib/Text.cpp": '#include "Text.h"\n#include "Lines.h"\n',
                                 "src/lib/Lines.h": '#include "Words.h"\n', "src/lib/Words.h": '#include "Text.h"\n'})
        self.assertEqual(faults, ["Circle: src/lib/Lines -> src/lib/Words -> src/lib/Text -> src/lib/Lines"])

    def test_counts_a_source_without_a_header_with_the_header_that_it_includes_first(self):
        faults = self.run_check({"src/lib/TextNumbers.cpp": '#include "Text.h"\n#include "Numbers.h"\n',
                                 "src/lib/Numbers.h": '#include "Text.h"\n'})
        self.assertEqual(faults, ["Circle: src/lib/Numbers -> src/lib/Text -> src/lib/Numbers"])

    def test_finds_no_circle_in_a_header_and_its_source(self):
        self.assertEqual(self.run_check({"src/lib/Text.h": "#pragma once\n", "src/lib/Words.h": '#include "Text.h"\n',
                                         "src/lib/Words.cpp": '#include "Words.h"\n#include "Text.h"\n'}), [])

    def test_finds_qt_and_opengl_outside_the_window(self):
        for path in ("src/output/Pages.cpp", "tests/output/WriterTest.cpp", "bench/WritingBench.cpp"):
            for header in ("QString", "QtCore/QString", "GL/gl.h"):
                with self.subTest(f"{path} {header}"):
                    self.assertEqual(self.run_check({path: f"#include <{header}>\n"}),
                                     [f"{path}:1: includes {header}: only the window may include Qt and OpenGL."])

    def test_lets_the_tests_of_the_window_include_qt(self):
        self.assertEqual(self.run_check({"tests/window/WindowTest.cpp": "#include <QTest>\n"}), [])

    def test_takes_a_header_of_the_tree_that_begins_with_q_for_no_header_of_qt(self):
        self.assertEqual(self.run_check({"src/lib/Queue.h": "", "src/lib/Lines.cpp": '#include "Queue.h"\n'}), [])

    def test_finds_a_file_outside_src(self):
        self.assertEqual(self.run_check({"src/lib/Words.cpp": '#include "../../tests/Words.h"\n', "tests/Words.h": ""}),
                         ["src/lib/Words.cpp:1: includes ../../tests/Words.h, which is not in src/."])

    def test_finds_an_include_that_a_macro_hides(self):
        self.assertEqual(self.run_check({"src/lib/Words.cpp": "#include HEADER\n"}),
                         ["src/lib/Words.cpp:1: includes HEADER: write the file's name instead of a macro."])

    def test_finds_a_room_without_a_row(self):
        self.assertEqual(self.run_check({"src/making/CMakeLists.txt": "room(core)\n"}),
                         ["src/making: ARCHITECTURE.md has no row for this room."])

    def test_finds_a_row_without_a_room(self):
        table = GOOD_TREE["ARCHITECTURE.md"] + "| 4 | `src/command/` | `command` | commands |\n"
        self.assertEqual(self.run_check({"ARCHITECTURE.md": table}),
                         ["ARCHITECTURE.md: the room src/command is missing."])

    def test_finds_a_room_in_another_library(self):
        self.assertEqual(self.run_check({"src/input/CMakeLists.txt": "room(gui)\n"}),
                         ["src/input/CMakeLists.txt: adds the room to gui; ARCHITECTURE.md says core."])

    def test_finds_a_file_outside_the_rooms(self):
        self.assertEqual(self.run_check({"src/Stray.h": ""}), ["src/Stray.h: lies in no room."])


unittest.main()
