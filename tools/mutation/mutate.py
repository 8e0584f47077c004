#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Patchloom authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Changes the sources at random, one place at a time, and tells which changes no test notices.

usage: mutate.py FOLDER COUNT SEED [CMAKE_OPTION...]

Works on a copy of the tree as it was last committed. Exits with 1 when a change went unnoticed.
"""

import glob
import os
import random
import re
import subprocess
import sys

# What decides where a patch is printed, in which order, and how it is written.
SOURCES = [
    "src/layout/ChartLayout.cpp", "src/layout/ChartPage.cpp", "src/layout/OutputPage.cpp", "src/layout/PageLayout.cpp",
    "src/layout/MeasurementLayout.cpp", "src/lib/Geometry.cpp", "src/lib/Geometry.h",
    "src/search/OrderSearch.cpp", "src/search/PartnerFinder.cpp", "src/search/CandidateKernel.h",
    "src/search/PatchColors.cpp", "src/search/PatchColors.h",
    "src/color/ColorEntry.cpp", "src/layout/ColorGap.cpp", "src/lib/OvMinBackHeap.h",
    "src/output/SheetFiles.cpp", "src/output/SheetDrawing.h", "src/output/TargetDescription.cpp",
    "src/lib/OvEPSFile.cpp", "src/lib/OvTIFFFile.cpp", "src/lib/OvRaster.cpp",
]

# A sign, a bound, a constant.
CHANGES = [
    (r" < ", " <= "), (r" <= ", " < "), (r" > ", " >= "), (r" >= ", " > "), (r" == ", " != "), (r" != ", " == "),
    (r" \+ ", " - "), (r" - ", " + "), (r" \* ", " / "), (r" / ", " * "), (r" \+= ", " -= "), (r" -= ", " += "),
    (r" && ", " || "), (r" \|\| ", " && "), (r"\+\+", "--"), (r"\btrue\b", "false"), (r"\bfalse\b", "true"),
    (r"(?<![\w.])(\d+)(?![\w.])", lambda match: str(int(match[1]) + 1)),
    (r"(?<![\w.])(\d+\.\d+)(?=f?\b)", lambda match: str(float(match[1]) * 1.01)),
]

BUILD_SECONDS = 900
TEST_SECONDS = 120


def places(text):
    """All single changes of a source, as (start, end, replacement)."""
    found = []
    offset = 0
    for line in text.splitlines(keepends=True):
        code = line.split("//")[0]
        if not re.match(r"\s*(#|template|static_assert|using |class |struct )", code):
            for pattern, replacement in CHANGES:
                for match in re.finditer(pattern, code):
                    if code.count('"', 0, match.start()) % 2 == 0:
                        found.append((offset + match.start(), offset + match.end(), match.expand(replacement)
                                      if isinstance(replacement, str) else replacement(match)))
        offset += len(line)
    return found


def succeeds(command, seconds):
    try:
        return subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=seconds).returncode == 0
    except subprocess.TimeoutExpired:
        return False


def noticed_by(build):
    """The first test program that fails; None when all pass."""
    for test in sorted(glob.glob(f"{build}/bin/*Test")):
        if not succeeds([test, "--gtest_fail_fast", "--gtest_brief=1"], TEST_SECONDS):
            return os.path.basename(test)
    return None


def main():
    folder, count, seed = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
    source, build = f"{folder}/source", f"{folder}/build"
    os.makedirs(source, exist_ok=True)
    subprocess.run(f"git archive HEAD | tar -x -C '{source}'", shell=True, check=True)
    subprocess.run(["cmake", "-S", source, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release", *sys.argv[4:]],
                   stdout=subprocess.DEVNULL, check=True)
    make = ["cmake", "--build", build, "--target", "core_tests"]
    subprocess.run(make, stdout=subprocess.DEVNULL, check=True)
    if failing := noticed_by(build):
        sys.exit(f"{failing} fails without any change.")

    generator = random.Random(seed)
    candidates = [(path, place) for path in SOURCES for place in places(open(f"{source}/{path}").read())]
    generator.shuffle(candidates)
    tried, unnoticed = 0, 0
    for path, (start, end, replacement) in candidates:
        if tried == count:
            break
        with open(f"{source}/{path}") as file:
            text = file.read()
        with open(f"{source}/{path}", "w") as file:
            file.write(text[:start] + replacement + text[end:])
        try:
            if not succeeds(make, BUILD_SECONDS):
                continue
            tried += 1
            test = noticed_by(build)
            unnoticed += test is None
            number = text.count("\n", 0, start) + 1
            line = text.splitlines()[number - 1].strip()
            print(f"{path}:{number}: {text[start:end].strip()} -> {replacement.strip()} in \"{line}\": "
                  f"{test or 'UNNOTICED'}", flush=True)
        finally:
            with open(f"{source}/{path}", "w") as file:
                file.write(text)
    print(f"{tried - unnoticed} of {tried} changes were noticed.")
    sys.exit(unnoticed > 0)


main()
