#!/bin/sh
# Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
# Records the symbols of the public libraries in debian/*.symbols. New ones get the version of debian/changelog with
# a "~": dpkg-gensymbols reports a lost symbol only in a later version than the recorded one.
# Usage: symbols.sh BUILD_FOLDER
set -eu
cd "$(dirname "$0")/../.."

for library in libvelaplatformplaces libvelasystem; do
    package=${library}1
    recorded=debian/$package.symbols
    now=$1/$package.symbols
    dpkg-gensymbols -q -c0 -t -p"$package" -e"$1/lib/$library.so.1" -I"$recorded" -O"$now" \
        -v"$(dpkg-parsechangelog -S Version)~"
    {
        grep '^[^ #]' "$now"
        # Demangled names are the same on each architecture. One stands for all symbols of a constructor.
        grep '^ ' "$now" | c++filt | sed -E '/^ \(/b; s/^ (.*[: ].*)@Base (.*)/ (c++)"\1@Base" \2/' | LC_ALL=C sort -u
    } >"$recorded.new"
    mv "$recorded.new" "$recorded"
done
