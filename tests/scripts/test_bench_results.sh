#!/usr/bin/env bash
# test_bench_results.sh SOURCE-DIRECTORY
#
# scripts/bench_results.py keeps what programs say of themselves, and tells what is worse beyond the spread of the runs.
set -euo pipefail
source=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
fail() { echo "FAILED: $*"; exit 1; }
# expect WHAT WANTED GOT
expect() { [ "$2" = "$3" ] || fail "$1: wanted '$2', got '$3'"; }

# A program with a table, whose times are the next ones of a list; and one that writes Google Benchmark's file.
cat >bench_table <<'PROGRAM'
#!/bin/sh
read -r time <delays; sed -i 1d delays
echo "4096 pictures at 640x480"
echo "copying takes $time ms, 7 MB/s"
PROGRAM
cat >bench_google <<'PROGRAM'
#!/bin/sh
cat >"$BENCHMARK_OUT" <<JSON
{"benchmarks": [
 {"name": "add/8", "run_type": "iteration", "iterations": 9, "real_time": 5.0, "cpu_time": 4.0, "time_unit": "ns", "items_per_second": 100.0},
 {"name": "add/8_mean", "run_type": "aggregate", "iterations": 9, "real_time": 5.0, "cpu_time": 4.0, "time_unit": "ns"}]}
JSON
PROGRAM
printf '#!/bin/sh\necho "no peers" >&2\nexit 3\n' >bench_broken
chmod +x bench_*

save() { "$source/scripts/bench_results.py" save "$1" 3 ./bench_table ./bench_google 2>errors >out || { cat errors; fail "save"; }; }
# median FILE KEY
median() { python3 -c 'import json, sys; print({r["key"]: r["median"] for r in json.load(open(sys.argv[1]))["results"]}[sys.argv[2]])' "$1" "$2"; }
printf '10\n12\n11\n' >delays && save kept/old.json
printf '20\n22\n21\n' >delays && save kept/slow.json
printf '12\n13\n11.5\n' >delays && save kept/near.json
expect "the median of a table" 11.0 "$(median kept/old.json "table copying takes # ms, # MB/s [1]")"
expect "the time of Google Benchmark" 4.0 "$(median kept/old.json "google add/8 time")"
expect "its counter" 100.0 "$(median kept/old.json "google add/8 items_per_second")"
expect "means are no results" 0 "$(grep -c add/8_mean kept/old.json || true)"

code=0
"$source/scripts/bench_results.py" compare kept/old.json kept/slow.json page.html >out || code=$?
expect "the exit code of something worse" 1 "$code"
expect "what is worse" "worse     +90.9%  table copying takes # ms, # MB/s [1]" "$(grep '^worse' out)"
grep -q '<tr class="worse">' page.html || fail "the page does not mark it"
! grep -q '<script\|http' page.html || fail "the page needs something else"

"$source/scripts/bench_results.py" compare kept/slow.json kept/old.json page.html >out || fail "better is a failure"
expect "what is better" "better    -47.6%  table copying takes # ms, # MB/s [1]" "$(grep '^better' out)"
"$source/scripts/bench_results.py" compare kept/old.json kept/near.json page.html >out || fail "runs that overlap are a failure"
expect "runs that overlap" "0 worse, 0 better, 0 changed, 5 same" "$(grep same out)"

code=0
"$source/scripts/bench_results.py" save kept/broken.json 1 ./bench_broken 2>errors || code=$?
expect "the exit code of a program that fails" 3 "$code"
expect "the reason" "bench: FAILED: ./bench_broken failed (3): no peers" "$(cat errors)"
[ ! -e kept/broken.json ] || fail "the results of a program that failed were kept"
echo OK
