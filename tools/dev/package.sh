#!/bin/sh
# Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
# Builds the Debian packages of the checkout in build/package, checks them with lintian, and runs package_check.sh in a
# clean root of this system's release.
set -eu
cd "$(dirname "$0")/../.."
folder=$PWD/build/package

say() { printf '\n== %s\n' "$*"; }

# Prints the package sources of this system that are those of the distribution.
sources() {
    apt-get indextargets --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' \
        'Created-By: Packages' "Origin: $(dpkg-vendor --query Vendor)" | sort -u
}

# Only downloaded lists name their distribution.
[ -n "$(sources)" ] || $([ "$(id -u)" = 0 ] || echo sudo) apt-get update -q
rm -rf "$folder"
mkdir -p "$folder/source" "$folder/checkout/tools"
git ls-files -z | tar -c --null -T - | tar -x -C "$folder/source"

# The build has an empty home folder, so ccache gets the folder of its cache.
if command -v ccache >/dev/null; then
    CCACHE_DIR=$(ccache --get-config cache_dir)
    export CCACHE_DIR CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi

say "building the packages without tests: minutes (log: build/package/build.log)"
# Line numbers are all debug information: more takes a third of the time.
export DEB_CFLAGS_APPEND="-g1 ${DEB_CFLAGS_APPEND-}" DEB_CXXFLAGS_APPEND="-g1 ${DEB_CXXFLAGS_APPEND-}"
(cd "$folder/source" && DEB_BUILD_OPTIONS="nocheck parallel=$(nproc) ${DEB_BUILD_OPTIONS-}" dpkg-buildpackage -us -uc) \
    >"$folder/build.log" 2>&1 || { tail -n 100 "$folder/build.log"; exit 1; }
for package in "$folder"/*.deb; do
    basename "$package"
    [ "${package#*-dbgsym}" != "$package" ] || dpkg-deb --fsys-tarfile "$package" | tar -t | sed -n 's/^\.\(.*[^/]\)$/    \1/p'
done

say "checking the packages with lintian: half a minute"
# A package of Debian's archive closes the report that asks for it; these packages are not in the archive.
lintian --allow-root --fail-on error --tag-display-limit 0 --suppress-tags initial-upload-closes-no-bugs "$folder"/*.changes

say "making a clean root, and installing, using and purging the packages in it: minutes"
mkdir "$folder/checkout/packages"
cp "$folder"/*.deb "$folder/checkout/packages"
rm -f "$folder"/checkout/packages/*-dbgsym_*.deb
cp README.md "$folder/checkout"
cp -r tools/dev "$folder/checkout/tools"
# The root is deleted afterwards.
sources | mmdebstrap --quiet --variant=apt --format=null --include=systemd \
    --customize-hook="copy-in '$folder/checkout' /" \
    --customize-hook='chroot "$1" /checkout/tools/dev/package_check.sh' \
    "$(. /etc/os-release && echo "$VERSION_CODENAME")" - -
