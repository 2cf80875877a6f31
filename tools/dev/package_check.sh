#!/bin/sh
# Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
# Installs the packages in the folder ../../packages, uses them and purges them. Run it as root of a system without them.
set -eu
cd "$(dirname "$0")/../.."
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8

say() { printf -- '-- %s\n' "$*"; }
fail() { echo "package check: $*" >&2; exit 1; }
install() { apt-get install -qq -y --no-install-recommends "$@" >log 2>&1 || { cat log; exit 1; }; }

# Runs commands as the ordinary user who uses the packages.
as_user() {
    su --login --whitelist-environment=LC_ALL user -c "set -eu; export VELA_CHANNEL_DIR=~/channel; $1"
}

# Prints the files that packages have left on the system.
left_files() {
    while read -r file; do
        [ -d "$file" ] || [ ! -e "$file" ] || echo "$file"
    done <installed_files
    find / -xdev \( -path /home -o -path /proc -o -path /sys -o -path /tmp -o -path "$PWD" -o -path /var/cache/apt \) -prune -o \
        \( -iname '*places*' -o -iname '*vela*' \) -print
}

useradd --create-home user
chmod 755 . && chmod -R a+rX .
packages=$(for file in packages/*.deb; do dpkg-deb --show --showformat='${Package}\n' "$file"; done)

say "installing placesd and places"
install ./packages/libvela*1_*.deb ./packages/placesd_*.deb ./packages/places_*.deb
for socket in placesd placesd-external; do
    [ -L "/etc/systemd/user/sockets.target.wants/$socket.socket" ] || fail "$socket.socket is not enabled"
done
XDG_RUNTIME_DIR=/tmp systemd-analyze verify --user placesd.service placesd.socket placesd-external.socket

say "using them"
as_user '
    placesd & service=$!
    while [ ! -S $VELA_CHANNEL_DIR/places ]; do kill -0 $service; sleep 0.1; done
    places --no-start add "Lake house" --at 47.24,8.72 --tag holiday
    places find lake
    # The service reads its airports and cities after its start.
    timeout 60 sh -c "until places search zurich --group suggestions --limit 1 2>/dev/null | grep Zürich; do sleep 0.1; done"
    places export places.geojson
    places backup places.backup
    kill $service; wait $service
    grep -q "Lake house" places.geojson
    placesd --check places.backup'

say "building the program of the README"
install ./packages/libvelaplatformplaces-dev_*.deb cmake g++ make pkg-config
as_user "$PWD/tools/dev/consumer.sh"
[ "$(pkg-config --modversion velaplatformplaces)" = "$(dpkg-query -W -f '${Version}' libvelaplatformplaces-dev)" ] ||
    fail "CMakeLists.txt and debian/changelog have different versions"

say "purging"
dpkg -L $packages | sort -u >installed_files
apt-get purge -qq -y $packages >log 2>&1 || { cat log; exit 1; }
left=$(left_files)
[ -z "$left" ] || fail "left after the purge: $left"
[ -s /home/user/.local/share/vela/places.db ] || fail "the purge removed the places of a user"
say "nothing is left but the places of the user"
