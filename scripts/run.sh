#!/usr/bin/env bash
# Installs what is missing, builds, and sends a video through the plug-in: each frame through an encoder context and a
# decoder context, once with the codec that the negotiation prefers and once with MPEG-1.
#
#   scripts/run.sh                    the clip in tests/data
#   scripts/run.sh VIDEO              any file that FFmpeg reads
#   scripts/run.sh VIDEO OPTIONS...   with options of "zyr-host stream", such as --frames 100 or --size 1280x720
#   scripts/run.sh --no-deps ...      don't look for missing packages first
#
# Packets, pictures and reports go to build/run/; the program is build/release/bin/zyr-host.
set -uo pipefail
start=$PWD
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

case ${1:-} in
-h | --help) sed -n '2,/^set -u/{/^set -u/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
esac
source scripts/lib.sh
if [ "${1:-}" = --no-deps ]; then shift; else scripts/deps.sh || exit 1; fi
video=tests/data/terminals.webm
if [ $# -gt 0 ] && [[ $1 != -* ]]; then
    video=$1
    [[ $video = /* || $video = *:* ]] || video=$start/$video
    shift
fi
configureAndBuild release zyr_programs || exit 1

out=build/run
mkdir -p "$out"
name=$(basename "${video%.*}" | tr -c 'A-Za-z0-9._\n-' '_')
# stream LABEL EXTENSION OPTIONS...
stream() {
    local label=$1 packets=$out/$name-$1.$2
    shift 2
    printf '\n== %s\n' "$label"
    build/release/bin/zyr-host stream "$video" --packets "$packets" --pictures "$out/$name-$label.y4m" \
        --report "$out/$name-$label.json" "$@"
}
stream default webm "$@" || exit
stream mpeg1video mpg --codec mpeg1video "$@" || exit
printf '\nwritten:\n'
stat -c '%s %n' "$out/$name"-* | while read -r size file; do printf '  %10d  %s\n' "$size" "$file"; done
