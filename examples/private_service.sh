# Sourced by the scripts of this folder. Their first argument is the folder of the programs.
bin=$(cd "$1" && pwd)
data=$(cd "$(dirname "$0")/data" && pwd)

# Starts a places service with these options in a temporary folder, which the script deletes when it ends.
start_service() {
    VELA_CHANNEL_DIR=$(mktemp -d)
    export VELA_CHANNEL_DIR
    "$bin/placesd" --database "$VELA_CHANNEL_DIR/places.db" "$@" &
    service=$!
    trap 'kill $service 2>/dev/null; wait $service 2>/dev/null; rm -rf "$VELA_CHANNEL_DIR"' EXIT
    tries=0
    until "$bin/places" --no-start tags >/dev/null 2>&1; do
        tries=$((tries + 1))
        [ $tries -lt 100 ] || { echo "the service does not start" >&2; exit 1; }
        sleep 0.1
    done
}
