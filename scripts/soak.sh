#!/usr/bin/env bash
# A live screen for a long time: viewers come, go and stop, and nothing may grow or break. Not part of CI.
#
#     scripts/soak.sh [SECONDS] [PRESET]     (3600 and ci)
#
# A moving picture of 320x240 is served. One viewer stays, one is stopped again and again, and one comes anew every ten
# seconds. Each minute a line tells the server's memory and descriptors. Ends with 0 when the server is as it was after
# the first minutes: descriptors the same, memory within 8 MiB, no viewer lost, no frame that could not be decoded.
set -eu
cd "$(dirname "$0")/.."
seconds=${1:-3600}
host=build/${2:-ci}/bin/zyr-host
[ -x "$host" ] || { echo "soak: build it first: $host" >&2; exit 2; }
[ "$seconds" -ge 180 ] || { echo "soak: at least 180 seconds" >&2; exit 2; }
work=$(mktemp -d)
viewers=()
# shellcheck disable=SC2317 # The trap below calls it.
finish() {
    kill -CONT "${viewers[@]}" 2>/dev/null || true
    kill "${viewers[@]}" "$server" 2>/dev/null || true
    wait 2>/dev/null || true
    rm -rf "$work"
}
export XDG_STATE_HOME=$work
"$host" serve "generate:320x240@30:$((seconds * 60))" --log-dir "$work" >"$work/address" 2>"$work/errors" &
server=$!
trap finish EXIT
while [ ! -s "$work/address" ]; do
    kill -0 "$server" 2>/dev/null || { cat "$work/errors" >&2; exit 1; }
    sleep 0.2
done
look() { "$host" view "$(cat "$work/address")" --insecure --no-window --log-dir "$work" "$@" >/dev/null 2>"$work/view-errors"; }
look --seconds "$seconds" --report "$work/stays" &
viewers+=($!)
"$host" view "$(cat "$work/address")" --insecure --no-window --log-dir "$work" --seconds "$seconds" --report "$work/stops" 2>/dev/null &
stopped=$!
viewers+=("$stopped")

failed=0
fail() { echo "soak: $1" >&2; failed=1; }
rss() { awk '/VmRSS/ { print $2 }' "/proc/$server/status"; }
descriptors() { find "/proc/$server/fd" -mindepth 1 | wc -l; }
start=$SECONDS minute=0 firstMemory=0 firstDescriptors=0
while [ $((SECONDS - start)) -lt $((seconds - 5)) ]; do
    kill -STOP "$stopped" 2>/dev/null || true
    look --frames 20 || fail "a viewer was turned away: $(cat "$work/view-errors")"
    sleep 8
    kill -CONT "$stopped" 2>/dev/null || true
    sleep 2
    kill -0 "$server" 2>/dev/null || { fail "the server has ended: $(tail -3 "$work/errors")"; break; }
    if [ $(((SECONDS - start) / 60)) -gt "$minute" ]; then
        minute=$(((SECONDS - start) / 60))
        memory=$(rss) open=$(descriptors)
        echo "$minute min: $memory KiB, $open descriptors"
        # The first two minutes warm up.
        if [ "$minute" -eq 2 ]; then
            firstMemory=$memory firstDescriptors=$open
        elif [ "$minute" -gt 2 ]; then
            [ "$memory" -le $((firstMemory + 8192)) ] || fail "memory grows: from $firstMemory to $memory KiB"
            [ "$open" -le "$firstDescriptors" ] || fail "descriptors grow: from $firstDescriptors to $open"
        fi
    fi
done
wait "${viewers[@]}" || fail "a viewer was lost"
for report in stays stops; do
    grep -q '"failed": 0,' "$work/$report" || fail "frames could not be decoded: $(grep -h failed "$work/$report" || true)"
    grep -H -E '"(frames|fps|keyFrames)"' "$work/$report" | sed "s|$work/||"
done
exit "$failed"
