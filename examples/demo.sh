#!/bin/sh
# Demonstrates the client and the service with real data, in a temporary folder that is deleted afterwards.
set -eu
. "$(dirname "$0")/private_service.sh"
start_service

# Prints a command and runs it.
run() {
    printf '\n$ places %s\n' "$*"
    "$bin/places" --no-start "$@"
}

echo "A places service is running in $VELA_CHANNEL_DIR."
run import "$data/airports.geojson" "$data/cities.geojson"
run find 'zur' --limit 5
run find 'sao paul' --limit 5
run near 47.37,8.54 --limit 5
airport=$("$bin/places" --json find 'zurich airport' | sed 's/.*"id":\([0-9]*\).*/\1/')
run show "$airport"
run fav "$airport"
run tag "$airport" holiday summer
run find --tag holiday --tag lbs-favorite
run use "$airport"
run recent --limit 3
run add 'Lake house' --at 47.24,8.72 --city Stäfa --country Switzerland --tag holiday
house=$("$bin/places" --json find 'lake house' | sed 's/.*"id":\([0-9]*\).*/\1/')
run update "$house" --name 'House by the lake' --phone '+41 44 555 01 23'
run link "$house"
run --json find 'house lake'
# Three searches, as while typing; only the last one is answered.
printf '\n$ printf '"'%s'"' | search_box\n' 'zur\nzuri\nzurich\n'
printf 'zur\nzuri\nzurich\n' | "$bin/search_box"
run search zur --limit 3
run untag "$airport" summer
run unfav "$airport"
run tags
run remove "$house"
run find 'house by the lake'
echo
echo 'That was the demo. The same commands work on your own places: see README.md.'
