#!/usr/bin/env bash
# Prints what compiling cost in CPU seconds: by folder, and the ten heaviest units.
#
#   scripts/build-times.sh [PRESET]    ci without it
#
# The numbers come from build/PRESET/compile-times.log: each unit's latest compilation. What came from the compiler's cache
# cost nothing and tells nothing, so for a budget build cold: CCACHE_RECACHE=1 scripts/test.sh --native. Linking is not in it.
set -euo pipefail
case ${1:-} in -h | --help) sed -n '2,/^set -/{/^set -/d;s/^# \{0,1\}//;p}' "$0"; exit ;; esac
cd "$(dirname "${BASH_SOURCE[0]}")/.."
log=build/${1:-ci}/compile-times.log
[ -s "$log" ] || { echo "build-times: no $log: build the preset first" >&2; exit 1; }

# Seconds, folder and unit of each output. Less than a fifth of a second is a result from the cache.
units() {
    awk '{ if ($1 + $2 >= 0.2 || !($3 in seconds)) seconds[$3] = $1 + $2 } END { for (output in seconds) print seconds[output], output }' "$log" |
        sed -E 's, \./, ,; s,CMakeFiles/[^/ ]+\.dir/,,; s,\.o$,,; s,\.gch$, (precompiled),' |
        awk '{ folder = $2; if (!sub("/[^/]*$", "", folder)) folder = "."
               unit = $0; sub("^[^ ]* ", "", unit)
               print $1 "\t" folder "\t" unit }'
}
units | awk -F'\t' '
    { depth = split($2, part, "/"); folder = part[1]
      if (depth > 1) folder = folder "/" part[2]
      if (depth > 2 && part[2] == "zyr_common") folder = folder "/" part[3]
      sum[folder] += $1; count[folder]++; all += $1; number++ }
    END { for (folder in sum) printf "%8.1f s  %4d units  %s\n", sum[folder], count[folder], folder | "sort -rn"
          close("sort -rn")
          printf "%8.1f s  %4d units  together (%.1f min)\n", all, number, all / 60 }'
printf '\nthe ten heaviest\n'
units | sort -rn | awk -F'\t' 'NR <= 10 { printf "%8.1f s  %s\n", $1, $3 }'
