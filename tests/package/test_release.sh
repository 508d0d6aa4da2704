#!/usr/bin/env bash
# test_release.sh SOURCE-DIRECTORY
#
# scripts/release.sh refuses what is not ready before it builds anything, and scripts/sbom.py says the same twice.
set -euo pipefail
source=$1
command -v git >/dev/null || { echo "skipped: this machine has no git"; exit 77; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME=$work GIT_AUTHOR_NAME=test GIT_AUTHOR_EMAIL=test@localhost GIT_COMMITTER_NAME=test GIT_COMMITTER_EMAIL=test@localhost

fail() { echo "FAILED: $*"; exit 1; }
# refuses WHAT EXIT-CODE WORDS ARGUMENTS...: the release ends with these words on its standard error, and nothing is made.
refuses() {
    local what=$1 code=$2 words=$3 got=0
    shift 3
    scripts/release.sh "$@" >"$work/out" 2>"$work/err" || got=$?
    [ "$got" = "$code" ] || { cat "$work/err"; fail "$what: exit code $got"; }
    [ "$(tail -n 1 "$work/err")" = "$words" ] || { cat "$work/err"; fail "$what: other words"; }
    [ ! -e dist ] || fail "$what: something was made"
    [ -z "$(git tag)" ] || [ "$(git tag)" = v9.8.7 ] || fail "$what: it was tagged"
}

mkdir "$work/tree"
cp -r "$source/CMakeLists.txt" "$source/CHANGELOG.md" "$source/scripts" "$work/tree/"
cd "$work/tree"
sed -i 's/^\(project(.* VERSION \)[0-9.]*/\19.8.7/' CMakeLists.txt
printf '# Changelog\n\n## 9.8.7 (not released)\n\n- Something.\n' >CHANGELOG.md
git init -q . && git add -A && git commit -q -m "Begin"

refuses "no version" 2 "release: a version such as 1.5.0 is needed (see --help)"
refuses "half a version" 2 "release: a version such as 1.5.0 is needed (see --help)" 9.8
refuses "two versions" 2 "release: one version, please (see --help)" 9.8.7 9.8.8
refuses "another version" 1 "release: FAILED: CMakeLists.txt says version 9.8.7" 9.8.8
refuses "no day" 1 \
    "release: FAILED: CHANGELOG.md has no heading '## 9.8.7 (YEAR-MONTH-DAY)', but '## 9.8.7 (not released)'" 9.8.7
touch new.txt
refuses "changes" 1 "release: FAILED: the tree has changes that are not committed: git status" 9.8.7
rm new.txt
git tag v9.8.7
refuses "a tag" 1 "release: FAILED: there is a tag v9.8.7 already" 9.8.7

git tag -d v9.8.7 >/dev/null

# archive NAME: the sum of the source archive; what else the release lacks is told and does not matter.
archive() {
    scripts/release.sh 9.8.7 --dry-run --skip-tests --no-packages --no-deps --output "$work/$1" >"$work/out" 2>&1 || true
    sha256sum "$work/$1/zyrmont-9.8.7.tar.xz" | cut -d ' ' -f 1
}
wanted=$(archive plain)
git config tar.umask 0077
git config core.autocrlf true
[ "$(umask 027 && LC_ALL=C.UTF-8 archive other)" = "$wanted" ] || fail "the source archive follows the settings of git"

# What packages say of their size is the same on every file system.
. "$source/scripts/lib.sh"
mkdir -p "$work/size/a/b"
printf 1 >"$work/size/a/one"
head -c 1025 /dev/zero >"$work/size/a/b/two"
ln -s one "$work/size/a/link"
[ "$(installedKilobytes "$work/size")" = 7 ] || fail "the size of three directories, a link and files of 1 and 2 KiB"

cd "$source"
export SOURCE_DATE_EPOCH=1700000000
mkdir "$work/dist"
echo archive >"$work/dist/zyrmont-9.8.7.tar.xz"
scripts/sbom.py 9.8.7 "$work/dist" >"$work/a.json"
scripts/sbom.py 9.8.7 "$work/dist" >"$work/b.json"
cmp "$work/a.json" "$work/b.json" || fail "the list of contents differs"
python3 - "$work/a.json" <<'CHECK' || fail "the list of contents"
import hashlib, json, sys
document = json.load(open(sys.argv[1], encoding="utf-8"))
packages = {package["SPDXID"]: package for package in document["packages"]}
assert document["creationInfo"]["created"] == "2023-11-14T22:13:20Z", document["creationInfo"]
assert len(packages) == len(document["packages"])
assert packages["SPDXRef-libxcb"]["licenseDeclared"] == "X11"
archive = packages["SPDXRef-File-zyrmont-9.8.7.tar.xz"]
assert archive["checksums"][0]["checksumValue"] == hashlib.sha256(b"archive\n").hexdigest()
for relation in document["relationships"]:
    for end in (relation["spdxElementId"], relation["relatedSpdxElement"]):
        assert end == "SPDXRef-DOCUMENT" or end in packages, end
assert {"DESCRIBES", "DYNAMIC_LINK", "STATIC_LINK", "GENERATES"} == {r["relationshipType"] for r in document["relationships"]}
CHECK
echo OK
