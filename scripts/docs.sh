#!/usr/bin/env bash
# Makes a site of plain HTML of the documents, the manual and the reference of all public headers:
# build/docs/site/index.html. A warning of Doxygen is a failure, and so is a link that leads nowhere.
#
#   scripts/docs.sh
#   scripts/docs.sh --no-deps     don't look for missing packages first
#   scripts/docs.sh --quick       without the reference, which takes a minute
#   scripts/docs.sh --share       only prints which share of the headers' lines are comments, by folder
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

share() {
    git ls-files -co --exclude-standard 'src/zyr_common/*.h' 'src/picture/*.h' | while read -r file; do
        [ -e "$file" ] && awk -v folder="$(dirname "${file#src/}")" '
            /[^ ]/ { all++ } /\/\/\// { comments++ } END { print folder, comments + 0, all + 0 }' "$file"
    done | awk '{ comments[$1] += $2; all[$1] += $3; comments["together"] += $2; all["together"] += $3 }
        END { for (folder in all) printf "%5.1f %%  %5d of %5d  %s\n", 100 * comments[folder] / all[folder],
                                         comments[folder], all[folder], folder }' | sort -k 5
}
quick=false
case ${1:-} in
-h | --help) sed -n '2,/^set -u/{/^set -u/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
--share) share; exit ;;
--no-deps) ;;
--quick) quick=true ;;
*) scripts/deps.sh --with docs || exit 1 ;;
esac
mkdir -p build/docs
# Debian's own Python has Debian's packages.
if $quick; then exec /usr/bin/python3 scripts/docs_site.py build/docs/site; fi
rm -rf build/docs/html
doxygen docs/Doxyfile >build/docs/doxygen.log 2>&1
if [ -s build/docs/doxygen.log ] || [ ! -e build/docs/html/index.html ]; then
    head -n 100 build/docs/doxygen.log
    exit 1
fi
printf 'docs: reference of %d pages\n' "$(find build/docs/html -name '*.html' | wc -l)"
/usr/bin/python3 scripts/docs_site.py build/docs/site build/docs/html
