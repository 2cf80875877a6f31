#!/bin/sh
# Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
# Compares the binary interface of the public libraries with the recorded one; with --record, records it.
# Usage: abi.sh BUILD_FOLDER [--record]
# Records only types of the public headers; private types may change at any time.
set -eu
cd "$(dirname "$0")/../.."
build=$1
new=$build/abi
mkdir -p "$new" docs/abi

# Writes the interface of LIBRARY, without paths and lines: abi LIBRARY OPTION...
abi() {
    library=$1
    shift
    abidw --no-comp-dir-path --no-corpus-path --no-show-locs --no-parameter-names --no-elf-needed --type-id-style hash \
        --exported-interfaces-only --drop-undefined-syms --drop-private-types "$@" \
        --out-file "$new/$library.abi" "$build/lib/$library.so.1"
    # Removes the folder of a source, because it depends on the build.
    sed -i "s#<abi-instr \(.*\)path='[^']*/#<abi-instr \1path='#" "$new/$library.abi"
}
abi libvelaplatformplaces --headers-dir include/places --suppressions tools/dev/abi.sup
abi libvelasystem --headers-dir platform/include

# Prints the enumerators in our namespace, which are the lines at this depth, with their enumerations. abidiff compares
# only those of function parameters. abidw may write an enumeration several times.
enumerators() {
    grep -E '<enum-decl |^ {16}<enumerator ' "$1" | awk '/<enum-decl / { name = $2 } !/<enum-decl / { print name, $2, $3 }' |
        sort -u
}

# Compares an interface with the recorded one.
compare() {
    enumerators "$1" >"$new/recorded.txt"
    enumerators "$2" >"$new/now.txt"
    abidiff "$1" "$2" && diff "$new/recorded.txt" "$new/now.txt"
}

status=0
for now in "$new"/*.abi; do
    recorded=docs/abi/$(basename "$now")
    if [ "${2-}" != --record ]; then
        compare "$recorded" "$now" || status=1
    # abidw orders its types by the build, so an equal interface is not recorded again.
    elif [ ! -e "$recorded" ] || ! compare "$recorded" "$now" >"$new/differences.txt"; then
        cp "$now" "$recorded"
    fi
done
[ $status = 0 ] || echo 'The binary interface has changed. If this is intended, run ./dev abi --record' >&2
exit $status
