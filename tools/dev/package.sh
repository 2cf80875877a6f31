#!/bin/sh
# Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
# Builds the Debian packages of the checkout in build/package, checks them with lintian, and runs package_check.sh in a
# clean root of this system's release.
set -eu
cd "$(dirname "$0")/../.."
folder=$PWD/build/package

say() { printf '\n== %s\n' "$*"; }

rm -rf "$folder"
mkdir -p "$folder/source" "$folder/checkout/tools"
git ls-files -z | tar -c --null -T - | tar -x -C "$folder/source"

say "building the packages without tests: minutes (log: build/package/build.log)"
(cd "$folder/source" && DEB_BUILD_OPTIONS="nocheck parallel=$(nproc) ${DEB_BUILD_OPTIONS-}" dpkg-buildpackage -us -uc) \
    >"$folder/build.log" 2>&1 || { tail -n 100 "$folder/build.log"; exit 1; }
(cd "$folder" && ls -1 -- *.dsc *.deb)

say "checking the packages with lintian: half a minute"
# A package of Debian's archive closes the report that asks for it; these packages are not in the archive.
lintian --fail-on error --tag-display-limit 0 --suppress-tags initial-upload-closes-no-bugs "$folder"/*.changes

say "making a clean root, and installing, using and purging the packages in it: minutes"
mkdir "$folder/checkout/packages"
cp "$folder"/*.deb "$folder/checkout/packages"
rm -f "$folder"/checkout/packages/*-dbgsym_*.deb
cp README.md "$folder/checkout"
cp -r tools/dev "$folder/checkout/tools"
# The root has the same mirrors as this system, but only those of the distribution. It is deleted afterwards.
apt-get indextargets --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' \
    'Created-By: Packages' "Origin: $(dpkg-vendor --query Vendor)" | sort -u |
    mmdebstrap --quiet --variant=apt --format=null --include=systemd \
        --customize-hook="copy-in '$folder/checkout' /" \
        --customize-hook='chroot "$1" /checkout/tools/dev/package_check.sh' \
        "$(. /etc/os-release && echo "$VERSION_CODENAME")" - -
