#!/usr/bin/env bash
# Compares what separately built modules rely upon in each other with what was committed and with what was released.
#
#   scripts/abi.sh               this tree beside tests/contract/contract.txt, and beside that file of the last tag
#   scripts/abi.sh --since REV   this commit in place of the last tag (of the form v1.5.0)
#   scripts/abi.sh --cross [REV] also builds the last tag or that commit, compares the modules (abidiff, when it is
#                                installed), and runs each side's modules in the other's host (scripts/together.py)
#   scripts/abi.sh --no-deps     don't look for missing packages first
#
# Exit codes: 0 nothing is gone (or there is no tag yet), 1 something is gone or doesn't run, 2 wrong usage, 3 --cross or
# --since has nothing to compare with. A tag of another minor version is no measure: its modules are refused anyway.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
source scripts/lib.sh

cross=false deps=true asked=""
while [ $# -gt 0 ]; do
    case $1 in
    --cross)
        cross=true
        shift
        if [ $# -gt 0 ] && [[ $1 != -* ]]; then asked=$1; shift; fi
        ;;
    --since) asked=${2:?--since needs a revision}; shift 2 ;;
    --no-deps) deps=false; shift ;;
    -h | --help) sed -n '2,/^set -u/{/^set -u/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
    *) echo "abi: unknown option: $1 (see --help)" >&2; exit 2 ;;
    esac
done
say() { printf 'abi: %s\n' "$*"; }
known=tests/contract/contract.txt
result=0
bad() { say "FAILED: $*"; result=1; }
finish() {
    if [ $result -eq 0 ]; then say "OK"; fi
    exit $result
}
versionOf() { sed -n 's/^project(.* VERSION \([0-9]*\.[0-9]*\).*/\1/p'; }

if $deps; then
    if $cross; then scripts/deps.sh --with abi || exit 1; else scripts/deps.sh || exit 1; fi
fi
scripts/contract.sh --check || bad "the tree and $known differ"

# ---- the last tag ------------------------------------------------------------------------------------------------------
old=$asked
if [ -z "$old" ]; then
    old=$(git describe --tags --abbrev=0 --match 'v[0-9]*' 2>/dev/null)
    if [ -z "$old" ]; then
        say "no tag yet: there is no release to compare with (a clone without tags gets them with 'git fetch --tags')"
        ! $cross || { say "--cross has nothing to run"; [ $result -ne 0 ] || exit 3; }
        finish
    fi
fi
if ! git rev-parse -q --verify "$old^{commit}" >/dev/null; then
    say "there is no revision $old"
    exit 3
fi
oldVersion=$(git show "$old:CMakeLists.txt" | versionOf)
version=$(versionOf <CMakeLists.txt)
if [ "$oldVersion" != "$version" ]; then
    say "$old is of version $oldVersion and this tree of $version: modules of another minor version are refused"
    finish
fi
if git cat-file -e "$old:$known" 2>/dev/null; then
    if scripts/contract.sh --since "$old"; then say "nothing of $old is gone"; else bad "something of $old is gone"; fi
else
    say "$old has no description of its own ($known)"
fi
$cross || finish

# ---- modules of the tag beside those of today ----------------------------------------------------------------------------
commit=$(git rev-parse "$old^{commit}")
tree=$PWD/build/abi/$commit
if [ ! -e "$tree/.whole" ]; then
    rm -rf "$tree"
    mkdir -p "$tree"
    git archive "$commit" | tar -x -C "$tree" && touch "$tree/.whole" || exit 1
fi
say "building $old (in build/abi)"
(
    cd "$tree" && cmake --preset ci -DZYR_BUILD_TESTS=OFF -DZYR_BUILD_BENCH=OFF >build.log 2>&1 &&
        cmake --build build/ci --target zyr_programs -j "$jobs" >>build.log 2>&1
) || { tail -n 20 "$tree/build.log"; bad "$old can't be built here"; finish; }
configureAndBuild ci zyr_programs || { bad "this tree can't be built"; finish; }

work=$(mktemp -d "${TMPDIR:-/tmp}/zyr-abi.XXXXXX")
trap 'rm -rf "$work"' EXIT
if command -v abidiff >/dev/null; then
    for module in "$tree"/build/ci/lib/*.so; do
        module=${module##*/}
        abidiff --no-added-syms "$tree/build/ci/lib/$module" "build/ci/lib/$module" >"$work/log" 2>&1
        code=$?
        # Bits: 1 and 2 are failures of the tool, 4 a change, 8 a change that breaks.
        if [ $((code & 11)) -ne 0 ]; then cat "$work/log"; bad "abidiff of $module"; else say "abidiff of $module: nothing is gone"; fi
    done
else
    say "not compared by abidiff: it is not installed (scripts/deps.sh --with abi)"
fi

say "old is $old, new is this tree"
scripts/together.py "$tree" "$PWD" || bad "old and new together"
finish
