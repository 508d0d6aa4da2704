#!/usr/bin/env bash
# Runs a compiler and adds a line to a log: user seconds, system seconds, what was written. The build puts it in front of the
# compilers when ZYR_BUILD_TIMES is on; scripts/build-times.sh reads the log.
#
#   scripts/time-compiler.sh LOG COMPILER ARGUMENTS...
log=$1 output=-
shift
for ((i = 1; i < $#; ++i)); do
    if [ "${!i}" = -o ]; then
        j=$((i + 1))
        output=${!j}
        break
    fi
done
TIMEFORMAT="%U %S $output"
# The compiler keeps its own words for the screen; one short line is appended whole, so that jobs side by side don't mix.
exec 3>&2
{ time "$@" 2>&3 3>&-; } 2>>"$log"
