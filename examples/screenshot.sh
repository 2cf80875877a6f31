#!/bin/sh
# Takes screenshots of places_browser with real data: screenshot.sh FOLDER_OF_PROGRAMS PICTURE
# PICTURE_OF_A_TYPING_ERROR.
set -eu
. "$(dirname "$0")/private_service.sh"
start_service --gazetteer "$data/cities.geojson"

grep -E '"iata":"(SFO|SCQ|SAN|SDU|GES|ZRH)"' "$data/airports.geojson" | sed 's/,$//' >"$VELA_CHANNEL_DIR/airports.geojsonl"
"$bin/places" --no-start import "$VELA_CHANNEL_DIR/airports.geojsonl"
for airport in 'san francisco' 'santiago-rosal'; do
    "$bin/places" --no-start fav "$("$bin/places" --json find "$airport" | sed 's/.*"id":\([0-9]*\).*/\1/')"
done
"$bin/places_browser" -platform offscreen --search san --screenshot "$2"
"$bin/places_browser" -platform offscreen --search "zuirch airprot" --screenshot "$3"
