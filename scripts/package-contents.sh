#!/usr/bin/env bash
# Looks into the packages of scripts/package.sh without installing them; they may be for another architecture.
#
#   scripts/package-contents.sh [DIRECTORY] [ARCHITECTURE]    default: dist, and this machine's
#
# Each has what it is for and nothing of another; programs and libraries are of the architecture, are bound when they are
# loaded, look for libraries beside themselves only, and name no directory of the machine that built them.
set -euo pipefail
cd "$(dirname "$0")/.."
case ${1:-} in
-h | --help) sed -n '2,/^set -e/{/^set -e/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
esac
directory=${1:-dist} architecture=${2:-$(dpkg --print-architecture)}
work=$(mktemp -d "${TMPDIR:-/tmp}/zyr-contents.XXXXXX")
trap 'rm -rf "$work"' EXIT
result=0
bad() { printf 'package-contents: FAILED: %s\n' "$*" >&2; result=1; }

case $architecture in
amd64) machine="Advanced Micro Devices X86-64" ;;
arm64) machine=AArch64 ;;
*) echo "package-contents: no idea of $architecture" >&2; exit 2 ;;
esac
declare -A wanted=(
    [zyrmont-host]="usr/bin/zyr-host usr/lib/systemd/system/zyr-host-serve@.service usr/share/man/man1/zyr-host.1.gz
        usr/share/bash-completion/completions/zyr-host usr/share/zsh/vendor-completions/_zyr-host
        usr/share/fish/vendor_completions.d/zyr-host.fish usr/share/zyrmont/live/index.html"
    [zyrmont-modules]="usr/lib/zyrmont/zyr_core.so usr/lib/zyrmont/zyr_picture.so usr/lib/zyrmont/plugins/zyr_ffmpeg.so
        usr/lib/zyrmont/plugins/zyr_blocks.so usr/share/zyrmont/js/zyr_blocks_decoder.js"
    [libzyrmont-dev]="usr/lib/libzyr_common.a usr/lib/libzyr_picture_model.a usr/lib/pkgconfig/zyrmont.pc
        usr/lib/cmake/Zyrmont/ZyrmontConfig.cmake usr/include/zyrmont/zyr_common/zyr_common.h
        usr/share/doc/libzyrmont-dev/examples/CMakeLists.txt"
    [zyrmont-dbgsym]="usr/lib/debug/.build-id")
version=""
for package in "${!wanted[@]}"; do
    file=$(echo "$directory/$package"_*_"$architecture".deb)
    [ -e "$file" ] || { bad "there is no $package for $architecture in $directory"; continue; }
    root=$work/$package
    dpkg-deb -R "$file" "$root"
    [ "$(dpkg-deb -f "$file" Architecture)" = "$architecture" ] || bad "$package is for another architecture"
    version=${version:-$(dpkg-deb -f "$file" Version)}
    [ "$(dpkg-deb -f "$file" Version)" = "$version" ] || bad "$package has another version"
    for path in ${wanted[$package]} "usr/share/doc/$package/copyright"; do
        [ -e "$root/$path" ] || bad "$package has no $path"
    done
    (cd "$root" && md5sum --quiet -c DEBIAN/md5sums) || bad "$package: sums"
    while read -r path; do
        for other in "${!wanted[@]}"; do
            if [ "$other" != "$package" ] && [ -e "$work/$other/$path" ]; then bad "$path is in $package and in $other"; fi
        done
    done < <(cd "$root" && find usr -type f)
done
[ $result -eq 0 ] || exit 1
grep -q "zyrmont-modules (= $version)" "$work/zyrmont-host/DEBIAN/control" || bad "the host takes modules of any version"

while read -r file; do
    name=${file#"$work"/*/}
    dynamic=$(readelf -dW "$file")
    readelf -hW "$file" | grep -q "Machine: *$machine" || bad "$name is for another machine"
    ! readelf -SW "$file" | grep -q ' \.debug_info' || bad "$name has debug symbols"
    ! grep -E 'R(UN)?PATH' <<<"$dynamic" | grep -vE '\[\$ORIGIN[/.a-z]*\]' || bad "$name looks for libraries elsewhere"
    # FFmpeg is built by its own rules, and tells how it was configured, its directory included.
    case $name in */ffmpeg/*) continue ;; esac
    grep -qE 'BIND_NOW|Flags:.* NOW' <<<"$dynamic" || bad "$name is bound late"
    for place in "$PWD" "${HOME:-/root}/.cache"; do
        # At the beginning of a path: short places are parts of others.
        pattern="(^|[^A-Za-z0-9_./-])$(printf '%s' "$place" | sed 's/[].[*^$+?(){}|\\]/\\&/g')(/|[^A-Za-z0-9_./-]|\$)"
        ! LC_ALL=C grep -qaE "$pattern" "$file" || bad "$name names $place"
    done
done < <(find "$work"/zyrmont-host/usr/bin "$work"/zyrmont-modules/usr/lib -type f \( -name 'zyr-host' -o -name '*.so*' \) | sort)
[ $result -ne 0 ] || printf 'package-contents: %s %s: OK\n' "$version" "$architecture"
exit $result
