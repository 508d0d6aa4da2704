#!/usr/bin/env bash
# Compares the shared libraries that files ask for with those that docs/third-party.md names, both ways.
#
#   scripts/linked.sh FILE...           the products: program, modules, plug-ins
#   scripts/linked.sh --ffmpeg DIR ...  and the FFmpeg libraries that are shipped with them, with what those ask for
#
# In the document's tables a library stands between backquotes in the column "Linked", without ".so" and number. One that
# is optional ("where the system has it") may be missing in the files. Exit code 1: they differ.
set -euo pipefail
cd "$(dirname "$0")/.."

ffmpeg="" files=()
while [ $# -gt 0 ]; do
    case $1 in
    --ffmpeg) ffmpeg=${2:?--ffmpeg needs a directory}; shift 2 ;;
    -h | --help) sed -n '2,/^set -e/{/^set -e/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
    -*) echo "linked: unknown option: $1 (see --help)" >&2; exit 2 ;;
    *) files+=("$1"); shift ;;
    esac
done
[ ${#files[@]} -gt 0 ] || { echo "linked: no files (see --help)" >&2; exit 2; }

# asked FILE...: "library file" for each library that a file asks for.
asked() {
    local file
    for file in "$@"; do
        readelf -dW "$file" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' |
            sed "s/\.so.*//; s/^ld-linux-.*/ld-linux/; s|\$| ${file##*/}|"
    done
}
# named HEADING: "library kind" for each library in the table below a heading; the kind is always or optional.
named() {
    awk -F '|' -v heading="$1" '
        /^#/ { inside = $0 == heading }
        inside && NF > 4 {
            kind = $4 ~ /where the system has it/ ? "optional" : "always"
            while (match($4, /`[^`]*`/)) {
                print substr($4, RSTART + 1, RLENGTH - 2), kind
                $4 = substr($4, RSTART + RLENGTH)
            }
        }' docs/third-party.md
}

result=0
# compare WHAT HEADING FILE...
compare() {
    local what=$1 heading=$2 library rest
    shift 2
    local needs names
    needs=$(asked "$@" | sort -u)
    names=$(named "$heading" | sort -u)
    [ -n "$names" ] || { echo "linked: docs/third-party.md has no table below '$heading'" >&2; exit 1; }
    while read -r library rest; do
        grep -q "^$library " <<<"$names" && continue
        echo "linked: $rest asks for $library, which docs/third-party.md does not name for $what"
        result=1
    done <<<"$needs"
    while read -r library rest; do
        # The loader is asked for by name on some architectures only.
        if [ "$rest" = optional ] || [ "$library" = ld-linux ] || grep -q "^$library " <<<"$needs"; then continue; fi
        echo "linked: docs/third-party.md names $library for $what, and no file asks for it"
        result=1
    done <<<"$names"
}
compare "what is shipped" "## In what is shipped" "${files[@]}"
if [ -n "$ffmpeg" ]; then
    compare "FFmpeg" "## What FFmpeg brings" "$ffmpeg"/lib{avcodec,avformat,avutil,swscale}.so.[0-9]*
fi
[ $result -ne 0 ] || echo "linked: docs/third-party.md names what is linked"
exit $result
