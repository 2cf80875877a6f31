#!/usr/bin/env python3
# Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
"""Checks the includes of every source file against the table "Allowed includes" of docs/architecture.md.

Usage: check_includes.py ROOT
"""

import re
import sys
from dataclasses import dataclass, field
from pathlib import Path

TABLE = "docs/architecture.md"
HEADING = "## Allowed includes"
# Where an include may be found, as the build says; the folder of the including file comes first.
INCLUDE_FOLDERS = ["include", "src", "service", ".", "platform/include", "platform/linux"]
# Every file in these needs a row.
CHECKED = ["src", "service"]
INCLUDE = re.compile(r'\s*#\s*include\s*(["<])([^">]+)[">]')


@dataclass
class Row:
    line: int
    allowed: list
    exceptions: dict = field(default_factory=dict)  # file: additional includes


def names_in(text):
    return re.findall(r"`([^`]+)`", text)


def read_table(root):
    """The rows by folder; every folder ends in a slash."""
    rows = {}
    lines = (root / TABLE).read_text().splitlines()
    for number, line in enumerate(lines[lines.index(HEADING) + 1:], lines.index(HEADING) + 2):
        if line.startswith("## "):
            break
        cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
        if len(cells) != 3 or not names_in(cells[0]):
            continue
        for folder in names_in(cells[0]):
            row = rows[folder] = Row(number, names_in(cells[1]))
            for exception in filter(None, cells[2].split(";")):
                file, *included = names_in(exception)
                row.exceptions[folder + file] = included
    return rows


def is_in(path, names):
    return any(path == name or (name.endswith("/") and path.startswith(name)) for name in names)


def rows_above(rows, file):
    return [row for folder, row in rows.items() if file.startswith(folder)]


def includes_of(root, file):
    """Line number and path, from the root, of each of our files that a file includes."""
    for number, line in enumerate((root / file).read_text().splitlines(), 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        quote, name = match.groups()
        folders = [str(Path(file).parent)] + INCLUDE_FOLDERS
        # Some headers are made by the build, of a file with ".in" at the end of its name.
        path = next((str(Path(folder, name)) for folder in folders for end in ("", ".in")
                     if (root / folder / (name + end)).is_file()), None)
        if path or quote == '"':
            yield number, path or name


def check_file(root, rows, file, used):
    above = rows_above(rows, file)
    if not above:
        return [f"{file}:1: no row of {TABLE} is about this folder"]
    allowed = [name for row in above for name in row.allowed]
    exceptions = [name for row in above for name in row.exceptions.get(file, [])]
    problems = []
    for number, path in includes_of(root, file):
        if str(Path(path).parent) == str(Path(file).parent) or is_in(path, allowed):
            continue
        used.update((file, name) for name in exceptions if is_in(path, [name]))
        if not is_in(path, exceptions):
            problems.append(f"{file}:{number}: {path} is not allowed for {Path(file).parent}/")
    return problems


def main(root):
    rows = read_table(root)
    used = set()
    problems = [f"{TABLE}:{row.line}: there is no {folder}" for folder, row in rows.items()
                if not (root / folder).is_dir()]
    folders = sorted({folder.split("/")[0] for folder in rows} | set(CHECKED))
    files = sorted(str(path.relative_to(root)) for folder in folders for path in (root / folder).rglob("*")
                   if path.suffix in (".h", ".cpp"))
    for file in files:
        if file.split("/")[0] in CHECKED or rows_above(rows, file):
            problems += check_file(root, rows, file, used)
    for row in rows.values():
        problems += [f"{TABLE}:{row.line}: {file} does not need {name}" for file, names in row.exceptions.items()
                     for name in names if (file, name) not in used]
    print("\n".join(problems) or f"{len(files)} files include what they may")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1])))
