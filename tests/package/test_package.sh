#!/usr/bin/env bash
# test_package.sh CMAKE BUILD-DIRECTORY SOURCE-DIRECTORY COMPILER
#
# The installed package is enough to build a plug-in and a host outside of the tree; the host runs both plug-ins, and the
# installed zyr-host runs the one that was built outside.
set -euo pipefail
cmake=$1 build=$2 source=$3 compiler=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME=$work XDG_CONFIG_HOME=$work/config XDG_STATE_HOME=$work/state

fail() { echo "FAILED: $*"; exit 1; }
# expect WHAT WANTED GOT
expect() { [ "$2" = "$3" ] || fail "$1: wanted '$2', got '$3'"; }

"$cmake" --install "$build" --prefix "$work/prefix" >"$work/install.log" || { cat "$work/install.log"; fail install; }
# The tree itself must not be needed.
! grep -rlF "$source" "$work/prefix/lib/cmake" || fail "the package names the source directory"

"$cmake" -S "$source/examples" -B "$work/build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_CXX_FLAGS=-Werror -DCMAKE_PREFIX_PATH="$work/prefix" >"$work/build.log" 2>&1 &&
    "$cmake" --build "$work/build" >>"$work/build.log" 2>&1 || { cat "$work/build.log"; fail "building the examples"; }

modules=$work/prefix/lib/zyrmont
host=$work/build/minimal_host
lines=$("$host" "$modules" "$work/build/plugins") || fail "minimal_host with the example's plug-in"
expect "the codec" "codec lossless" "$(sed -n 1p <<<"$lines")"
expect "frames without any difference" 5 "$(grep -c '^frame [0-4]: [0-9]* bytes, difference 0\.00$' <<<"$lines")"

lines=$("$host" "$modules" "$modules/plugins" mpeg1video) || fail "minimal_host with zyr_ffmpeg.so"
expect "the codec" "codec mpeg1video" "$(sed -n 1p <<<"$lines")"
expect "frames" 5 "$(grep -c '^frame [0-4]: [0-9]* bytes, difference [0-9.]*$' <<<"$lines")"

! "$host" "$modules" "$work/build/plugins" vp9 2>"$work/errors" || fail "minimal_host found a codec that is not there"
expect "the reason" "no encoder and decoder agree" "$(cat "$work/errors")"

report=$("$work/prefix/bin/zyr-host" stream generate:128x96:4 --no-default-plugins --plugins "$work/build/plugins" --json) ||
    fail "zyr-host with the example's plug-in"
expect "the codec of zyr-host" '"codec": "lossless"' "$(grep -o '"codec": "[a-z0-9]*"' <<<"$report" | head -n 1)"
"$work/prefix/bin/zyr-host" conform "$work/build/plugins/lossless.so" >"$work/conform.log" ||
    { grep -A3 '^not ok' "$work/conform.log"; fail "the example's plug-in keeps the rules"; }

# A new project builds at once, and its own tests pass.
for kind in codec objects; do
    "$work/prefix/bin/zyr-host" new-plugin fresh_one "$work/$kind" --kind "$kind" >/dev/null || fail "new-plugin $kind"
    CXX=$compiler CXXFLAGS="-Wall -Wextra -Werror -O1 -g0" CMAKE_GENERATOR=Ninja "$work/$kind/ci.sh" "$work/prefix" \
        >"$work/$kind.log" 2>&1 || { cat "$work/$kind.log"; fail "the new project ($kind)"; }
done
report=$("$work/prefix/bin/zyr-host" stream generate:128x96:4 --no-default-plugins --plugins "$work/codec/build/plugins" \
    --json) || fail "zyr-host with the new plug-in"
expect "the new codec" '"codec": "fresh_one"' "$(grep -o '"codec": "[a-z0-9_]*"' <<<"$report" | head -n 1)"

# The code of the first pages builds as it stands there, and does what they say.
for page in first-host first-plugin; do
    "$source/tests/package/docs_samples.py" "$source/docs/$page.md" "$work/$page"
    "$cmake" -S "$work/$page" -B "$work/$page/build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER="$compiler" \
        -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror -g0" -DCMAKE_PREFIX_PATH="$work/prefix" >"$work/$page.log" 2>&1 &&
        "$cmake" --build "$work/$page/build" >>"$work/$page.log" 2>&1 || { cat "$work/$page.log"; fail "the code of docs/$page.md"; }
done
expect "what docs/first-host.md prints" "$(cat "$work/first-host/expected.txt")" \
    "$("$work/first-host/build/first_host" "$modules" 2>&1)"
"$work/prefix/bin/zyr-host" stream generate:64x48:5 --codec plain --plugins "$work/first-plugin/build/plugins" >"$work/plain.log" ||
    fail "zyr-host with the plug-in of docs/first-plugin.md"
grep -q 'PSNR inf dB' "$work/plain.log" || { cat "$work/plain.log"; fail "the plug-in of docs/first-plugin.md changes pictures"; }
"$work/prefix/bin/zyr-host" conform "$work/first-plugin/build/plugins/plain.so" >"$work/conform.log" ||
    { grep -A3 '^not ok' "$work/conform.log"; fail "the plug-in of docs/first-plugin.md keeps the rules"; }
echo "OK"
