#!/usr/bin/env bash
# Says what separately built modules rely upon in each other: sizes, offsets and slots of classes, exports of modules,
# GUIDs of interfaces, names and keys of stored records, texts of enumerations.
#
#   scripts/contract.sh             prints it for this tree
#   scripts/contract.sh --check     compares it with tests/contract/contract.txt; the tests do this too
#   scripts/contract.sh --write     takes this tree's additions over into tests/contract/contract.txt
#   scripts/contract.sh --since REV the same comparison with the file of another commit
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
known=tests/contract/contract.txt

case ${1:-} in
"") mode=() ;;
--check | --write) mode=("$1" "$known") ;;
--since)
    old=$(mktemp)
    trap 'rm -f "$old"' EXIT
    git show "${2:?--since needs a revision}:$known" >"$old"
    mode=(--check "$old")
    ;;
-h | --help) sed -n '2,/^set -e/{/^set -e/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
*) echo "contract: unknown option: $1 (see --help)" >&2; exit 2 ;;
esac

cmake --preset ci >/dev/null
cmake --build --preset ci --target zyr_contract >/dev/null
read -ra arguments <build/ci/tests/contract/arguments
scripts/contract.py "${mode[@]}" "${arguments[@]}"
