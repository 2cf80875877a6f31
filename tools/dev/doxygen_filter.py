#!/usr/bin/env python3
# Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
"""Prints a header for Doxygen. A member without a comment gets the comment of the pattern that it matches.

Usage: doxygen_filter.py HEADER
So the reference describes every member, and headers contain only comments that no pattern provides. Any other member
without a comment causes a warning.
"""

import re
import sys
from pathlib import Path

PATTERNS = [
    (r"(\w+)\(const \1 &other\);", "Copies the value."),
    (r"(\w+) &operator=\(const \1 &other\);", "Copies the value."),
    (r"(\w+) &operator=\(\1 &&other\) noexcept;", "Moves the value, like the move constructor."),
    (r"friend void swap\(", "Swaps the values without a copy."),
    (r"(friend )?bool operator!=\(", "The opposite of ==."),
    (r"operator AuxiliaryData\(\) const", "A copy of the record."),
    (r"enum Type : int", "The values; the class is their scope."),
    (r"explicit \w+\(QObject \*parent = nullptr\);", "Lives in the calling thread; `parent`, when given, owns it."),
]
GETTER = re.compile(r"\s*\[\[nodiscard\]\] .*?(\w+)\((?:const QString &key)?\) const;")
SETTER = re.compile(r"\s*void set\w+\(")


def comment_of(line, getter):
    if SETTER.match(line) and getter:
        return f"Sets what {getter}() returns."
    return next((text for pattern, text in PATTERNS if re.match(pattern, line.strip())), None)


def main():
    getter, commented = None, False
    for line in Path(sys.argv[1]).read_text().splitlines():
        comment = None if commented else comment_of(line, getter)
        # On the same line, so that line numbers in warnings are those of the header.
        print(f"/** {comment} */ {line}" if comment else line)
        commented = line.strip().startswith("///")
        if match := GETTER.match(line):
            getter = match[1]


main()
