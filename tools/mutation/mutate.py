#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Patchloom authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Changes the core's sources at random, one place at a time, and tells which changes no test notices.

usage: mutate.py FOLDER COUNT SEED [CMAKE_OPTION...]

Works on a copy of the tree as it was last committed. Every file in src/ but those of the window can be changed. The
tests of the changed file run first, then those of its room, then the rest. Exits with 1 when a change went unnoticed.
"""

import glob
import os
import random
import re
import resource
import subprocess
import sys

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
TEST_BYTES = 8 << 30  # a change may make a loop that takes memory for ever


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


def succeeds(command, seconds, limit=None):
    try:
        return subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=seconds,
                              preexec_fn=limit).returncode == 0
    except subprocess.TimeoutExpired:
        return False


def builds(build, targets):
    return succeeds(["cmake", "--build", build, "--target", *targets], BUILD_SECONDS)


def passes(test):
    return succeeds([test, "--gtest_fail_fast", "--gtest_brief=1"], TEST_SECONDS,
                    lambda: resource.setrlimit(resource.RLIMIT_AS, (TEST_BYTES, TEST_BYTES)))


def sources_of(source):
    """All files of the core, relative to the tree."""
    paths = [os.path.relpath(path, source) for kind in ("h", "cpp") for path in glob.glob(f"{source}/src/*/*.{kind}")]
    return sorted(path for path in paths if not path.startswith("src/window/"))


def tests_by_room(source):
    """For each room of the core the names of its test programs."""
    tests = {}
    for path in sorted(glob.glob(f"{source}/tests/*/*Test.cpp")):
        room = os.path.basename(os.path.dirname(path))
        if os.path.isdir(f"{source}/src/{room}") and room != "window":
            tests.setdefault(room, []).append(os.path.basename(path)[:-len(".cpp")])
    return tests


def stages_for(path, tests):
    """The tests for a change of a file, in stages: its own, then the others of its room, then those of other rooms."""
    room, name = os.path.basename(os.path.dirname(path)), os.path.splitext(os.path.basename(path))[0]
    of_room = tests.get(room, [])
    own = [test for test in of_room if test.startswith(name)]
    return [own, [test for test in of_room if test not in own],
            [test for others in tests.values() if others is not of_room for test in others]]


def noticed_by(build, stages):
    """The first test that fails; "" when all pass, None when the change does not compile.

    A stage is built only when no test of the stages before it fails.
    """
    for tests in stages:
        if tests and not builds(build, tests):
            return None
        for test in tests:
            if not passes(f"{build}/bin/{test}"):
                return test
    return ""


def main():
    folder, count, seed = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
    source, build = f"{folder}/source", f"{folder}/build"
    subprocess.run(["rm", "-rf", source], check=True)
    os.makedirs(source)
    subprocess.run(f"git archive HEAD | tar -x -m -C '{source}'", shell=True, check=True)
    subprocess.run(["cmake", "-S", source, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
                    "-DPATCHLOOM_WINDOW=OFF", "-DPATCHLOOM_TOOLS=OFF", "-DPATCHLOOM_BENCHMARKS=OFF", *sys.argv[4:]],
                   stdout=subprocess.DEVNULL, check=True)
    tests = tests_by_room(source)
    failing = noticed_by(build, [[test for room in tests.values() for test in room]])
    if failing is None:
        sys.exit("The tests do not build without any change.")
    if failing:
        sys.exit(f"{failing} fails without any change.")

    generator = random.Random(seed)
    candidates = [(path, place) for path in sources_of(source) for place in places(open(f"{source}/{path}").read())]
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
            test = noticed_by(build, stages_for(path, tests))
            if test is None:
                continue
            tried += 1
            unnoticed += not test
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
