#!/bin/sh
# Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
# Follows the README: builds the program of "Ten lines" outside the source tree, once with the README's CMake lines and
# once with pkg-config, and runs both programs against placesd. With a build folder, installs its files for that in a
# temporary folder; otherwise uses the files that are installed on this system.
# Usage: consumer.sh [BUILD_FOLDER]
set -eu
cd "$(dirname "$0")/../.."
folder=$(mktemp -d)
service=
trap '[ -z "$service" ] || { kill "$service"; wait "$service" || true; }; rm -rf "$folder"' EXIT

# Prints the first code block in this LANGUAGE of that section of the README.
readme() { sed -n '/^## Ten lines/,/^## /p' README.md | sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/p" | sed '1d; /^```$/,$d'; }

# Installs the files of a BUILD_FOLDER, and makes CMake, pkg-config, the linker and the shell find them.
install() {
    cmake --install "$1" --prefix "$folder/installed" >/dev/null
    libraries=$(dirname "$(find "$folder/installed" -name 'libvelaplatformplaces.so')")
    export CMAKE_PREFIX_PATH="$folder/installed" PKG_CONFIG_PATH="$libraries/pkgconfig" LD_RUN_PATH="$libraries"
    export PATH="$folder/installed/bin:$PATH"
}

[ $# = 0 ] || install "$1"
mkdir "$folder/program"
readme cpp >"$folder/program/main.cpp"
{
    echo 'cmake_minimum_required(VERSION 3.25)'
    echo 'project(my_program LANGUAGES CXX)'
    readme cmake | sed '/^find_package/a add_executable(my_program main.cpp)'
} >"$folder/program/CMakeLists.txt"
cd "$folder/program"

cmake -S . -B by-cmake >/dev/null
cmake --build by-cmake >/dev/null
mkdir by-pkg-config
# shellcheck disable=SC2046 # The flags are words.
c++ main.cpp -o by-pkg-config/my_program $(pkg-config --cflags --libs velaplatformplaces)

export VELA_CHANNEL_DIR="$folder/channel"
placesd --database "$folder/places.db" --gazetteer '' &
service=$!
for _ in $(seq 100); do
    [ ! -S "$VELA_CHANNEL_DIR/places" ] || break
    sleep 0.1
done

# Each run stores the place again and finds all of them.
id=0
for program in by-cmake by-pkg-config; do
    id=$((id + 1))
    written=$($program/my_program)
    case "$written" in
    *"$id Old town"*'/?lat=46.948'*) echo "$program: found place $id" ;;
    *) echo "$program: unexpected output: $written" >&2; exit 1 ;;
    esac
done
