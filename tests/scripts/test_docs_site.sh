#!/usr/bin/env bash
# test_docs_site.sh SOURCE-DIRECTORY
#
# Every link of the documents leads somewhere, and one that doesn't is told.
set -euo pipefail
source=$1
python=/usr/bin/python3
"$python" -c 'import markdown' 2>/dev/null || { echo "skipped: this machine has no python3-markdown"; exit 77; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAILED: $*"; exit 1; }

"$python" "$source/scripts/docs_site.py" "$work/site" >"$work/log" || { cat "$work/log"; fail "the documents"; }
[ -s "$work/site/docs/first-host.html" ] || fail "a document has no page"
grep -q '<a href="docs/architecture.html">' "$work/site/index.html" || fail "a link to a document is none to its page"

mkdir -p "$work/tree/scripts" "$work/tree/docs/man"
cp "$source/scripts/docs_site.py" "$work/tree/scripts/"
printf '# First\n\n## A heading\n\n[a](docs/b.md#part) [b](#a-heading) [c](gone.txt) [d](docs/b.md#nothing) [e](docs/c.md)\n' >"$work/tree/README.md"
printf '# Second\n\n## Part\n\n[back](../README.md)\n' >"$work/tree/docs/b.md"
: >"$work/tree/docs/man/zyr-host.1"
code=0
"$python" "$work/tree/scripts/docs_site.py" "$work/small" >"$work/log" || code=$?
[ $code = 1 ] || fail "links that lead nowhere are no failure"
[ "$(grep -c 'leads nowhere' "$work/log")" = 3 ] || { cat "$work/log"; fail "other links than the three"; }
for link in gone.txt docs/b.html#nothing docs/c.md; do grep -q "$link" "$work/log" || fail "$link was not told"; done
echo OK
