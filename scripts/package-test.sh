#!/usr/bin/env bash
# Installs the packages of scripts/package.sh in a bare system, uses them there and takes them away again.
#
#   scripts/package-test.sh [DIRECTORY]   tests the packages in it (default: dist)
#   scripts/package-test.sh --quick ...   does not build the examples
#   scripts/package-test.sh --root DIR    uses this bare system (a directory of debootstrap's) and leaves it there
#   scripts/package-test.sh --release R   in a bare system of this Debian release, such as trixie (default: the machine's)
#   scripts/package-test.sh --arch arm64  in an emulated bare system, and without the examples
#
# Takes root, and mmdebstrap unless --root is given; the bare system comes from the machine's own apt sources. As an
# unprivileged user: inspect, doctor and a stream. What was there before is a lower version of the same packages, with a
# file that is gone since: the upgrade has to take it away. Then both examples are built against the development package, by CMake and
# by pkg-config, and run; the packages are removed and purged, and nothing of them may stay.
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/lib.sh
. scripts/lib.sh

arguments=("$@")
codename=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")
native=$(dpkg --print-architecture)
packages=dist root="" quick=false release=$codename architecture=$native
while [ $# -gt 0 ]; do
    case $1 in
    --root) root=${2:?--root needs a directory}; shift 2 ;;
    --release) release=${2:?--release needs a name}; shift 2 ;;
    --arch) architecture=${2:?--arch needs a name}; shift 2 ;;
    --quick) quick=true; shift ;;
    -h | --help) sed -n '2,/^set -e/{/^set -e/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
    *) packages=$1; shift ;;
    esac
done
die() { printf 'package-test: FAILED: %s\n' "$*" >&2; exit 1; }
say() { printf 'package-test: %s\n' "$*"; }
[ "$(id -u)" = 0 ] || die "root is needed for a bare system"
if [ "$architecture" != "$native" ]; then
    # A compiler under emulation takes half an hour.
    quick=true
    if [ -z "${ZYR_EMULATED:-}" ]; then
        ZYR_EMULATED=1 inEmulatorNamespace scripts/package-test.sh "${arguments[@]}"
        exit
    fi
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/zyr-package-test.XXXXXX")
chmod 755 "$work"
mounted=()
cleanUp() {
    for place in "${mounted[@]}"; do umount -l "$place"; done
    rm -rf --one-file-system "$work"
}
trap cleanUp EXIT

if [ -z "$root" ]; then
    command -v mmdebstrap >/dev/null || die "mmdebstrap is not installed"
    root=$work/root
    say "making a bare $release for $architecture"
    if [ "$release/$architecture" = "$codename/$native" ]; then
        cat /etc/apt/sources.list.d/*.sources /etc/apt/sources.list /etc/apt/sources.list.d/*.list 2>/dev/null >"$work/sources" || true
    else
        mirror=$(packageMirror) || die "apt has no source of packages"
        echo "deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $mirror $release main" >"$work/sources"
    fi
    # In a user namespace there are no device nodes to be made, and none are needed: the machine's are mounted below.
    mmdebstrap --quiet --variant=apt --mode=root --architectures="$architecture" --skip=check/qemu,setup/mknod,output/mknod \
        "$release" "$root" - <"$work/sources" >"$work/log" 2>&1 || { tail -n 5 "$work/log" >&2; die "mmdebstrap"; }
fi
mkdir -p "$root/packages"
cp "$packages"/*_"$architecture".deb "$root/packages/" || die "no packages for $architecture in $packages"
cp /etc/resolv.conf "$root/etc/resolv.conf" 2>/dev/null || true
for place in proc dev; do
    mount --rbind --make-rslave "/$place" "$root/$place"
    mounted+=("$root/$place")
done
inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 HOME=/tmp DEBIAN_FRONTEND=noninteractive "$@"; }
# Nobody has a home of his own, with the directory in which programs make theirs.
inside install -d -o nobody -g nogroup /tmp/nobody /tmp/nobody/.config
asUser() { inside setpriv --reuid=65534 --regid=65534 --clear-groups env HOME=/tmp/nobody "$@"; }
apt() {
    inside apt-get -qq -y --no-install-recommends "$@" >"$work/log" 2>&1 || { tail -n 10 "$work/log" >&2; die "apt-get $*"; }
}
# expect WHAT WANTED GOT
expect() { [ "$2" = "$3" ] || die "$1: wanted '$2', got '$3'"; }

# The same packages as a version before them, each with a file that the real ones lack.
mkdir "$root/packages/before"
for package in zyrmont-modules zyrmont-host; do
    new=$(echo "$root"/packages/"$package"_*.deb)
    version=$(dpkg-deb -f "$new" Version)
    dpkg-deb -R "$new" "$work/before"
    sed -i "s/^Version: .*/Version: 0.9~before/; s/(= $version)/(= 0.9~before)/" "$work/before/DEBIAN/control"
    mkdir -p "$work/before/usr/lib/zyrmont/gone"
    echo "$package" >"$work/before/usr/lib/zyrmont/gone/$package"
    dpkg-deb --root-owner-group -Znone --build "$work/before" "$root/packages/before/$package.deb" >/dev/null
    rm -rf "$work/before"
    files+=("/packages/$(basename "$new")")
done

say "installing a version before"
apt update
apt install /packages/before/zyrmont-modules.deb /packages/before/zyrmont-host.deb
inside test -e /usr/lib/zyrmont/gone/zyrmont-host || die "the version before is not installed"
say "upgrading host and modules"
apt install "${files[@]}"
expect "the version" "$version" "$(inside dpkg-query -W -f '${Version}' zyrmont-host)"
inside test ! -e /usr/lib/zyrmont/gone || die "the upgrade leaves files of the version before"
inside dpkg --verify zyrmont-host zyrmont-modules >"$work/out" || { cat "$work/out"; die "dpkg --verify"; }

say "inspect, doctor and a stream as an unprivileged user"
asUser zyr-host inspect vp9 >"$work/out" 2>&1 || { cat "$work/out"; die "inspect"; }
grep -q '^encoder libvpx-vp9, software' "$work/out" || { cat "$work/out"; die "inspect shows no encoder"; }
asUser zyr-host doctor vp9 >"$work/doctor" 2>&1 || { cat "$work/doctor"; die "doctor"; }
expect "the verdict" "vp9 works: vp9 by libvpx-vp9 and vp9" "$(tail -n 1 "$work/doctor")"
for codec in vp9 mpeg1video blocks; do
    report=$(asUser zyr-host stream generate:128x96:4 --codec "$codec" --json 2>"$work/err") || { cat "$work/err"; die "stream of $codec"; }
    expect "the codec" "\"codec\": \"$codec\"" "$(grep -o '"codec": "[a-z0-9]*"' <<<"$report" | head -n 1)"
done
inside test -s /usr/share/man/man1/zyr-host.1.gz || die "the manual is missing (is the root set to leave it out?)"
inside bash -c '. /usr/share/bash-completion/completions/zyr-host && COMP_WORDS=(zyr-host doc) COMP_CWORD=1 && _zyr_host && test "${COMPREPLY[0]}" = doctor' ||
    die "completion"

if ! $quick; then
    say "building the examples against the development package"
    apt install "/packages/$(basename "$root"/packages/libzyrmont-dev_*.deb)" cmake g++ make
    inside cp -r /usr/share/doc/libzyrmont-dev/examples /tmp/examples
    inside cmake -S /tmp/examples -B /tmp/build -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS=-Werror >"$work/log" 2>&1 &&
        inside cmake --build /tmp/build >>"$work/log" 2>&1 || { tail -n 20 "$work/log"; die "the examples by CMake"; }
    lines=$(asUser /tmp/build/minimal_host /usr/lib/zyrmont /tmp/build/plugins) || die "minimal_host with the example's plug-in"
    expect "frames without any difference" 5 "$(grep -c '^frame [0-4]: [0-9]* bytes, difference 0\.00$' <<<"$lines")"
    inside sh -c 'g++ -DZYR_MODULE_WORD="\"minimal_host\"" $(pkg-config --cflags zyrmont) /tmp/examples/minimal_host/main.cpp -o /tmp/host \
        $(pkg-config --libs zyrmont) -static-libstdc++ -static-libgcc -Wl,--exclude-libs,ALL' >"$work/log" 2>&1 ||
        { tail -n 20 "$work/log"; die "the example by pkg-config"; }
    expect "the codec" "codec vp9" "$(asUser /tmp/host /usr/lib/zyrmont /usr/lib/zyrmont/plugins vp9 | sed -n 1p)"
fi

say "removing and purging"
mapfile -t installed < <(inside dpkg-query -W -f '${Package} ${Source}\n' | sed -n 's/ zyrmont$//p')
# What the service leaves where it ran and was enabled.
inside install -d /var/lib/zyr-host/ada /etc/systemd/system/multi-user.target.wants
inside sh -c 'echo token >/var/lib/zyr-host/ada/token'
inside ln -s /usr/lib/systemd/system/zyr-host-serve@.service /etc/systemd/system/multi-user.target.wants/zyr-host-serve@ada.service
inside dpkg --remove "${installed[@]}" >"$work/log" 2>&1 || { cat "$work/log"; die "dpkg --remove"; }
inside test -s /var/lib/zyr-host/ada/token || die "the token is gone before the purge"
inside dpkg --purge "${installed[@]}" >"$work/log" 2>&1 || { cat "$work/log"; die "dpkg --purge"; }
rm -rf "$root/packages"
# The program's own log is the user's, in his own directories.
rm -rf "$root"/tmp/*
rm -rf "$root/tmp/.local"
left=$(inside find / -xdev -path /proc -prune -o -path /dev -prune -o -iname '*zyr*' -print)
[ -z "$left" ] || die "this stays: $left"
expect "packages that stay" "" "$(inside dpkg-query -W 'zyrmont*' 'libzyrmont*' 2>/dev/null)"
say "OK"
