#!/usr/bin/env bash
# Makes the packages of scripts/package.sh for another Debian release, in a bare system of that release.
#
#   scripts/package-in.sh RELEASE [DIRECTORY]   such as trixie; the packages go to the directory (default: dist/RELEASE)
#   scripts/package-in.sh RELEASE --root DIR    keeps the bare system there (default: build/RELEASE), or uses the one there
#
# What is committed is built, with the compiler and the libraries of the release, and looked at by its lintian. Takes root
# and mmdebstrap. The bare system stays for the next time; "rm -rf" takes it away.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib.sh
. scripts/lib.sh

release="" output="" root=""
while [ $# -gt 0 ]; do
    case $1 in
    --root) root=${2:?--root needs a directory}; shift 2 ;;
    -h | --help) sed -n '2,/^set -e/{/^set -e/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
    -*) echo "package-in: unknown option: $1 (see --help)" >&2; exit 2 ;;
    *) if [ -z "$release" ]; then release=$1; else output=$1; fi; shift ;;
    esac
done
[ -n "$release" ] || { echo "package-in: which release? (see --help)" >&2; exit 2; }
die() { printf 'package-in: FAILED: %s\n' "$*" >&2; exit 1; }
say() { printf 'package-in: %s\n' "$*"; }
[ "$(id -u)" = 0 ] || die "root is needed for a bare system"
root=${root:-$PWD/build/$release} output=${output:-dist/$release}
mkdir -p "$output"

if [ ! -e "$root/etc/os-release" ]; then
    command -v mmdebstrap >/dev/null || die "mmdebstrap is not installed"
    say "making a bare $release in $root"
    mirror=$(packageMirror) || die "apt has no source of packages"
    mkdir -p "$(dirname "$root")"
    mmdebstrap --quiet --variant=apt --mode=root "$release" "$root" "$mirror" || die "mmdebstrap"
fi
mounted=()
cleanUp() { for place in "${mounted[@]}"; do umount -l "$place"; done; }
trap cleanUp EXIT
cp /etc/resolv.conf "$root/etc/resolv.conf" 2>/dev/null || true
for place in proc dev; do
    mount --rbind --make-rslave "/$place" "$root/$place"
    mounted+=("$root/$place")
done
# Always the same place, so that the compiler's cache of the last time is of use.
rm -rf "$root/src"
mkdir "$root/src"
git archive HEAD | tar -x -C "$root/src"
chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
    DEBFULLNAME="${DEBFULLNAME:-}" DEBEMAIL="${DEBEMAIL:-}" SOURCE_DATE_EPOCH="${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}" \
    /src/scripts/package.sh --lint || die "scripts/package.sh in $release"
rm -f "$output"/*.deb
cp "$root"/src/dist/* "$output/"
say "the packages are in $output; scripts/package-test.sh --release $release $output tries them"
