#!/usr/bin/env python3
# Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
"""Runs a Clang tool on every source of a build folder, on all processors. Any finding is an error.

Usage: lint.py clang-tidy|clazy BUILD_FOLDER [SOURCE...]
A SOURCE is a file or a folder; without one, all sources of the project are checked, except those that the build
generates. The build folder needs to be configured, not built.
"""

import json
import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
OURS = rf"^{ROOT}/(bench|examples|formats|fuzz|include|platform|service|src|tests|tools)/"
# The first line of a finding; its notes follow.
FINDING = re.compile(r"^(?=\S.*(?:warning|error): )", re.MULTILINE)
TOOLS = {
    "clang-tidy": ["clang-tidy", "--quiet"],
    "clazy": ["clazy-standalone", "--checks=level1", f"--header-filter={OURS}"],
}


def unique_commands(build):
    """One command for each source: a source of several programs is checked once."""
    commands = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        source = Path(entry["directory"], entry["file"]).resolve()
        if ROOT in source.parents and build not in source.parents:
            commands.setdefault(source, entry)
    return commands


def check(command, source):
    """The findings of the tool in a source, as texts."""
    done = subprocess.run([*command, str(source)], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    found = FINDING.split(done.stdout)[1:]
    return found or ([f"{source}: error: {done.stdout}"] if done.returncode else [])


def main():
    tool, build = sys.argv[1], Path(sys.argv[2]).resolve()
    wanted = [Path(argument).resolve() for argument in sys.argv[3:]] or [ROOT]
    commands = unique_commands(build)
    database = build / "lint"
    database.mkdir(exist_ok=True)
    (database / "compile_commands.json").write_text(json.dumps(list(commands.values())))
    sources = [source for source in commands if any(root == source or root in source.parents for root in wanted)]

    # A finding in a header occurs in every source that includes it, but is printed once.
    printed = set()
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        command = [*TOOLS[tool], "-p", str(database)]
        for found in pool.map(lambda source: check(command, source), sources):
            for finding in found:
                where = finding.splitlines()[0]
                if where not in printed:
                    printed.add(where)
                    print(finding.rstrip(), flush=True)
    print(f"{tool}: {len(sources)} sources, {len(printed)} findings")
    return 1 if printed or not sources else 0


sys.exit(main())
