#!/usr/bin/env bash
# Makes a release of what is committed: checks, source archive, packages, list of contents, checksums, tag.
#
#   scripts/release.sh VERSION            all of it; the last step is the tag vVERSION, which is not pushed
#   scripts/release.sh VERSION --dry-run  the same without the tag; what would stop the release is told, and goes on
#   scripts/release.sh ... --skip-tests   does not run scripts/test.sh, nor compares what tests execute
#   scripts/release.sh ... --arch NAME    packages for this architecture (x86_64, aarch64); may be given more than once
#   scripts/release.sh ... --output DIR   puts everything there (default: dist)
#   scripts/release.sh ... --no-packages  source archive, list of contents and checksums only
#   scripts/release.sh ... --no-deps      don't look for missing packages first
#
# The tree has to be clean, CMakeLists.txt to have the version and CHANGELOG.md a heading with it and its day, and
# scripts/abi.sh to find nothing gone. Packages are built out of the unpacked source archive, without git. The same commit
# gives the same bytes on the same system: times are the commit's, or SOURCE_DATE_EPOCH.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

version="" dry=false tests=true packages=true output=dist deps=true architectures=()
while [ $# -gt 0 ]; do
    case $1 in
    --dry-run) dry=true; shift ;;
    --skip-tests) tests=false; shift ;;
    --no-packages) packages=false; shift ;;
    --no-deps) deps=false; shift ;;
    --arch) architectures+=("${2:?--arch needs a name}"); shift 2 ;;
    --output) output=${2:?--output needs a directory}; shift 2 ;;
    -h | --help) sed -n '2,/^set -e/{/^set -e/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
    -*) echo "release: unknown option: $1 (see --help)" >&2; exit 2 ;;
    *) [ -z "$version" ] || { echo "release: one version, please (see --help)" >&2; exit 2; }; version=$1; shift ;;
    esac
done
[[ $version =~ ^[0-9]+\.[0-9]+\.[0-9]+$ ]] || { echo "release: a version such as 1.5.0 is needed (see --help)" >&2; exit 2; }
[ ${#architectures[@]} -gt 0 ] || architectures=("$(uname -m)")
say() { printf 'release: %s\n' "$*"; }
stopped=0
# stop WHY: the end of a release; a dry run goes on, and fails at its end.
stop() {
    printf 'release: FAILED: %s\n' "$*" >&2
    $dry || exit 1
    stopped=$((stopped + 1))
}

# ---- checks --------------------------------------------------------------------------------------------------------------
commit=$(git rev-parse HEAD)
[ -z "$(git status --porcelain)" ] || stop "the tree has changes that are not committed: git status"
! git rev-parse -q --verify "refs/tags/v$version" >/dev/null || stop "there is a tag v$version already"
stated=$(sed -n 's/^project(.* VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
[ "$stated" = "$version" ] || stop "CMakeLists.txt says version $stated"
if ! grep -qE "^## ${version//./\\.} \([0-9]{4}-[0-9]{2}-[0-9]{2}\)$" CHANGELOG.md; then
    stop "CHANGELOG.md has no heading '## $version (YEAR-MONTH-DAY)', but '$(grep -m 1 '^## ' CHANGELOG.md)'"
fi
depsOption=()
$deps || depsOption=(--no-deps)
if $tests; then
    scripts/test.sh "${depsOption[@]}" || stop "scripts/test.sh"
    scripts/coverage.sh "${depsOption[@]}" --compare || stop "scripts/coverage.sh --compare"
else
    printf '\n*** release: THE TESTS WERE SKIPPED. Nobody knows whether this release works. ***\n\n' >&2
fi
scripts/abi.sh "${depsOption[@]}" || stop "scripts/abi.sh: something that modules rely upon is gone"

# ---- the source archive --------------------------------------------------------------------------------------------------
export SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct "$commit")} LC_ALL=C TZ=UTC
mkdir -p "$output"
output=$(cd "$output" && pwd)
rm -f "$output"/{SHA256SUMS,*.deb,zyrmont-*.tar.xz,zyrmont-*.spdx.json}
name=zyrmont-$version
work=$(mktemp -d "${TMPDIR:-/tmp}/zyr-release.XXXXXX")
trap 'rm -rf "$work"' EXIT
# Whatever git is set to here.
git -c tar.umask=0002 -c core.autocrlf=false archive --format=tar --prefix="$name/" "$commit" >"$work/$name.tar"
xz -9 -T1 -c "$work/$name.tar" >"$output/$name.tar.xz"
say "$name.tar.xz, $(stat -c %s "$output/$name.tar.xz") bytes"
tar -x -C "$work" -f "$work/$name.tar"

# ---- packages, out of the archive and without git ------------------------------------------------------------------------
if $packages; then
    for arch in "${architectures[@]}"; do
        say "packages for $arch"
        (cd "$work/$name" && GIT_DIR=$work/none scripts/package.sh "${depsOption[@]}" --arch "$arch" --output "$output") ||
            stop "scripts/package.sh for $arch"
    done
    rm -f "$output/SHA256SUMS"
fi

# ---- what is in it, and checksums ----------------------------------------------------------------------------------------
scripts/sbom.py "$version" "$output" >"$work/$name.spdx.json" || stop "scripts/sbom.py"
mv "$work/$name.spdx.json" "$output/"
(cd "$output" && sha256sum -- *.deb *.tar.xz *.spdx.json 2>/dev/null | sort -k 2 >SHA256SUMS) || true
cat "$output/SHA256SUMS"

if [ $stopped -gt 0 ]; then
    say "$stopped things would stop this release"
    exit 1
fi
if $dry; then
    say "a dry run: no tag"
else
    git tag -a -m "Zyrmont FFmpeg plug-in $version" "v$version" "$commit"
    say "tagged v$version; 'git push origin v$version' makes it known"
fi
