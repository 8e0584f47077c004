#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Patchloom authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks that every file of the tree includes only what its room may include.

usage: includes.py [TREE]

The rooms, their rings and their libraries are read from the table in ARCHITECTURE.md. The check fails, with one line
for each fault, when

  - a file in src/ includes a room that does not lie in a ring below its own, or a file outside src/;
  - files in src/ include each other in a circle. Foo.h and Foo.cpp count as one, and a source without a header of its
    own counts with the header that it includes first;
  - a file includes Qt or OpenGL and does not belong to the window;
  - Foo.cpp in src/ includes anything before Foo.h, which would hide what the header itself lacks;
  - a room of the table is missing, or CMake adds it to another library than the table says.
"""

import pathlib
import re
import sys

# A row of the table in ARCHITECTURE.md: | 1 | `src/lib/` | `patchloom_foundation` | ...
ROOM_ROW = re.compile(r"^\| *(\d+) *\| *`src/(\w+)/` *\| *`(\w+)` *\|", re.MULTILINE)

# How the CMakeLists.txt of a room names the library.
ROOM_LIBRARY = re.compile(r"^(?:room|add_library)\((\w+)", re.MULTILINE)

# Only these know Qt and OpenGL. A name that ends in / is a folder.
WINDOW_FILES = (
    "src/window/", "tests/window/", "tests/journeys/", "tests/languages/", "tests/packaging/", "tools/demo/",
    "bench/PreviewBench.cpp", "bench/StartUpBench.cpp", "cmake/sanitize/",
)
WINDOW_HEADER = re.compile(r"Q|qt|GL/")

FOLDERS = ("bench", "cmake", "fuzz", "src", "tests", "tools")
# An include in quotes, in angle brackets, or by a macro.
INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>|(.*))')


class Tree:
    def __init__(self, root):
        self.root = pathlib.Path(root)
        self.faults = []
        self.rings, self.libraries = {}, {}
        for ring, room, library in ROOM_ROW.findall((self.root / "ARCHITECTURE.md").read_text()):
            self.rings[room] = int(ring)
            self.libraries[room] = library
        self.files = sorted(path.relative_to(self.root).as_posix() for folder in FOLDERS
                            for path in (self.root / folder).rglob("*") if path.suffix in (".h", ".cpp"))
        self.known = set(self.files)
        self.nodes = {path: path.rsplit(".", 1)[0] for path in self.files}
        self.below = {}  # for each node the nodes that it includes

    def fault(self, path, line, text):
        self.faults.append(f"{path}:{line}: {text}")

    def check(self):
        self.check_rooms()
        for path in self.files:
            includes = [(number, *match.groups())
                        for number, line in enumerate((self.root / path).read_text().splitlines(), 1)
                        if (match := INCLUDE.match(line))]
            if path.endswith(".cpp") and path[:-len("cpp")] + "h" not in self.known and includes:
                first = self.resolve(path, includes[0][1] or "")
                if first and room_of(first) == room_of(path):
                    self.nodes[path] = self.nodes[first]
            self.check_first(path, includes)
            for include in includes:
                self.check_include(path, *include)
        self.check_circles()
        return self.faults

    def check_rooms(self):
        """The rooms of the table are the folders of src/, in the libraries that CMake adds them to."""
        folders = {path.name for path in (self.root / "src").iterdir() if path.is_dir()}
        for room in sorted(folders - self.rings.keys()):
            self.faults.append(f"src/{room}: ARCHITECTURE.md has no row for this room.")
        for room in sorted(self.rings.keys() - folders):
            self.faults.append(f"ARCHITECTURE.md: the room src/{room} is missing.")
        for path in self.files:
            if path.startswith("src/") and not room_of(path):
                self.faults.append(f"{path}: lies in no room.")
        for room in sorted(self.rings.keys() & folders):
            script = self.root / "src" / room / "CMakeLists.txt"
            libraries = ROOM_LIBRARY.findall(script.read_text()) if script.is_file() else []
            if libraries != [self.libraries[room]]:
                found = " and ".join(libraries) or "nothing"
                self.faults.append(f"src/{room}/CMakeLists.txt: adds the room to {found}; "
                                   f"ARCHITECTURE.md says {self.libraries[room]}.")

    def check_first(self, path, includes):
        header = path[:-len("cpp")] + "h"
        if path.startswith("src/") and path.endswith(".cpp") and header in self.known \
                and (not includes or self.resolve(path, includes[0][1] or "") != header):
            self.fault(path, includes[0][0] if includes else 1, f"includes something before {header}.")

    def check_include(self, path, line, quoted, angled, other):
        name = quoted or angled
        if not name:
            if path.startswith("src/"):
                self.fault(path, line, f"includes {other}: write the file's name instead of a macro.")
            return
        target = self.resolve(path, name)
        if target is None and WINDOW_HEADER.match(name) and not path.startswith(WINDOW_FILES):
            self.fault(path, line, f"includes {name}: only the window may include Qt and OpenGL.")
        if not path.startswith("src/"):
            return
        if target is None:
            if quoted and not name.endswith(".moc"):
                self.fault(path, line, f"includes {name}, which is not in src/.")
            return
        room, target_room = room_of(path), room_of(target)
        if room != target_room and room in self.rings and target_room in self.rings \
                and self.rings[target_room] >= self.rings[room]:
            self.fault(path, line, f"includes {target}: src/{room} may include only rings below its own.")
        node, target_node = self.nodes[path], self.nodes[target]
        if node != target_node:
            self.below.setdefault(node, set()).add(target_node)

    def resolve(self, path, name):
        """The file in src/ that an include names, searched for in the compiler's order; None for any other file."""
        folders = [pathlib.PurePosixPath(path).parent, pathlib.PurePosixPath("src"),
                   *(pathlib.PurePosixPath("src") / room for room in sorted(self.rings, key=self.rings.get))]
        for folder in folders:
            candidate = normal(folder / name)
            if candidate in self.known:
                return candidate if candidate.startswith("src/") else None
        return None

    def check_circles(self):
        """Names each circle once, from its first file in the alphabet."""
        for start in sorted(self.below):
            if circle := self.shortest_way(start, start):
                if start == min(circle):
                    self.faults.append("Circle: " + " -> ".join(circle))

    def shortest_way(self, start, end):
        """The shortest way from one node to another by at least one include; empty when there is none."""
        ways, reached = [[start]], set()
        for way in ways:
            for node in sorted(self.below.get(way[-1], ())):
                if node == end:
                    return way + [end]
                if node not in reached:
                    reached.add(node)
                    ways.append(way + [node])
        return []


def normal(path):
    """A path without ".."."""
    parts = []
    for part in path.parts:
        if part == ".." and parts:
            parts.pop()
        elif part != ".":
            parts.append(part)
    return "/".join(parts)


def room_of(path):
    """The room of a file in src/; empty for a file that lies in none."""
    parts = path.split("/")
    return parts[1] if len(parts) > 2 else ""


def main():
    root = sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).resolve().parents[2]
    tree = Tree(root)
    faults = tree.check()
    print("\n".join(faults) if faults else f"{len(tree.files)} files: no include leaves its ring, no circles.")
    sys.exit(bool(faults))


if __name__ == "__main__":
    main()
