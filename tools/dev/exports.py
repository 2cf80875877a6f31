#!/usr/bin/env python3
# Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
"""Checks that the public libraries export only what the public headers declare.

Usage: exports.py BUILD_FOLDER
"""

import json
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
NAMESPACE = "vela::platform::places"
# Each library, its headers, and the Clang options that filter its syntax tree.
LIBRARIES = [
    ("libvelaplatformplaces.so.1", "include/places", ["-Xclang", f"-ast-dump-filter={NAMESPACE}"]),
    ("libvelasystem.so.1", "platform/include", []),
]
# A constructor or destructor has up to three symbols; the syntax tree contains one.
VARIANT = re.compile(r"(?<=[CD])[0-2](?=E)")
OF_A_CLASS = re.compile(r"^(?:vtable|typeinfo|typeinfo name) for ")
# A constant inside a function of a header, such as a QStringLiteral.
IN_A_FUNCTION = re.compile(r"::\{lambda.*")


def output(*command, **options):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True, **options).stdout


def demangled(symbols):
    return output("c++filt", input="\n".join(symbols)).splitlines()


def exported_by(library):
    """The exported symbols by their demangled names."""
    symbols = [line.split()[-1] for line in output("nm", "-D", "--defined-only", str(library)).splitlines()]
    return dict(zip(demangled(symbols), symbols))


def syntax_trees(headers, build, options):
    """The declarations that pass the filter. Clang writes one JSON document for each."""
    includes = "".join(f'#include "{header}"\n' for header in sorted(headers))
    folders = [f"-I{folder}" for folder in (ROOT / "include", build / "include", ROOT / "platform/include")]
    text = output("clang++", "-x", "c++", "-std=c++17", "-fPIC", "-fsyntax-only", *folders,
                  *output("pkg-config", "--cflags", "Qt5Core").split(), "-Xclang", "-ast-dump=json", *options, "-",
                  input=includes)
    decoder, position = json.JSONDecoder(), 0
    while (position := text.find("{", position)) >= 0:
        tree, position = decoder.raw_decode(text, position)
        yield tree


def declared_in(tree, symbols, classes):
    """Adds the symbols and classes that a syntax tree declares."""
    if "mangledName" in tree:
        symbols.add(tree["mangledName"])
    if tree["kind"] == "CXXRecordDecl" and "completeDefinition" in tree:
        classes.add(f"{NAMESPACE}::{tree.get('name')}")
    for inner in tree.get("inner", []):
        declared_in(inner, symbols, classes)


def undeclared(library, headers, build, options):
    """The demangled names of symbols that a library exports but no header declares."""
    symbols, classes = set(), set()
    for tree in syntax_trees((ROOT / headers).rglob("*.h"), build, options):
        declared_in(tree, symbols, classes)
    names = classes.union(demangled(symbols))
    symbols = {VARIANT.sub("", symbol) for symbol in symbols}
    for name, symbol in exported_by(build / "lib" / library).items():
        if VARIANT.sub("", symbol) not in symbols and IN_A_FUNCTION.sub("", OF_A_CLASS.sub("", name)) not in names:
            yield name


def main():
    build = Path(sys.argv[1]).resolve()
    found = 0
    for library, headers, options in LIBRARIES:
        for name in undeclared(library, headers, build, options):
            print(f"{library}: exported, but not declared in a public header: {name}")
            found += 1
    return 1 if found else 0


sys.exit(main())
