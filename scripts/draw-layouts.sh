#!/usr/bin/env bash
# Draws the pictures of docs/layout.md anew, each from the JSON file of its name.
#
#   scripts/draw-layouts.sh [PROGRAM]   PROGRAM is zyr-host; build/debug/bin/zyr-host without it
set -euo pipefail
case ${1:-} in -h | --help) sed -n '2,/^set -/{/^set -/d;s/^# \{0,1\}//;p}' "$0"; exit ;; esac
program=$(realpath "${1:-$(dirname "${BASH_SOURCE[0]}")/../build/debug/bin/zyr-host}")
cd "$(dirname "${BASH_SOURCE[0]}")/../docs/layout"
for file in *.json; do
    expected=0
    case $file in refused-*) expected=1 ;; esac
    result=0
    "$program" layout "$file" --keep-going --svg - >"${file%.json}.svg" || result=$?
    [ $result -eq $expected ] || { echo "$file: exit code $result" >&2; exit 1; }
done
