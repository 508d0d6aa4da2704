#!/usr/bin/env bash
# Long runs that CI cannot afford: every fuzzer for a time, a million frames and a thousand size changes, thousands of
# launches, logins, saves and loads. While a run goes on its memory, descriptors and threads are looked at.
#
#   scripts/campaign.sh                    all of it; about 20 hours on two cores
#   scripts/campaign.sh --quick            a small part of each, in some minutes; nothing is written down
#   scripts/campaign.sh --only PATTERN     only the runs whose names match, such as 'fuzz:*', 'frames:vp9'; may be given again
#   scripts/campaign.sh --fuzz-seconds N   so long for each fuzzer (default: 3600)
#   scripts/campaign.sh --frames N         so many frames for each codec (default: 500000; a size change each 500 frames)
#   scripts/campaign.sh --live-frames N    so many frames for each codec of the live screen (default: 100000)
#   scripts/campaign.sh --logins N         so many passwords and so many sessions (default: 5000)
#   scripts/campaign.sh --again            runs that passed at this commit are run once more; they are left out otherwise
#   scripts/campaign.sh --list             the names of the runs
#   scripts/campaign.sh --no-build         with the programs that are there
#   scripts/campaign.sh --no-deps          don't look for missing packages first
#
# Results are appended to docs/campaigns.md. What the fuzzers have learned stays in build/campaign/corpus, where the next run
# goes on; an input that breaks something is left in build/campaign/findings. It can be stopped at any time: runs that are
# through are not repeated. Presets: ci, and fuzz (clang) for the fuzzers.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

deps=true build=true arguments=()
for argument in "$@"; do
    case $argument in
    -h | --help) sed -n '2,/^set -u/{/^set -u/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
    --no-deps) deps=false ;;
    --no-build) build=false ;;
    --list) exec python3 scripts/campaign.py --list ;;
    *) arguments+=("$argument") ;;
    esac
done
source scripts/lib.sh
if $deps; then scripts/deps.sh --with test || exit 1; fi
if $build; then
    wanted=$(python3 scripts/campaign.py --list "${arguments[@]}") || exit 2
    if grep -q '^fuzz:' <<<"$wanted"; then configureAndBuild fuzz all || exit 1; fi
    if grep -qv '^fuzz:' <<<"$wanted"; then
        configureAndBuild ci zyr_programs || exit 1
        for program in test_process test_login test_load_threads; do
            configureAndBuild ci "$program" || exit 1
        done
    fi
fi
exec python3 scripts/campaign.py "${arguments[@]}"
