#!/usr/bin/env bash
# Builds Debian packages of the tree for the machine's own release.
#
#   scripts/package.sh                    builds and packs, into dist/
#   scripts/package.sh --arch aarch64     packs a cross-build for arm64
#   scripts/package.sh --build DIRECTORY  packs what is built there already
#   scripts/package.sh --output DIRECTORY puts the packages there
#   scripts/package.sh --no-deps          don't look for missing packages first
#   scripts/package.sh --lint             and checks them with lintian
#
#   zyrmont-host      the program, its page, manual and completion for bash, zsh and fish, a service for live screens
#   zyrmont-modules   core and picture modules, plug-ins; FFmpeg where the release has no 7.1
#   libzyrmont-dev    headers, static libraries, CMake package, pkg-config, examples
#   zyrmont-dbgsym    debug symbols of all of it
#
# The same sources give the same bytes: the time in the packages is SOURCE_DATE_EPOCH, by default that of the last commit.
# DEBFULLNAME and DEBEMAIL name who answers for the packages.
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/lib.sh
. scripts/lib.sh

arch=$(uname -m) build="" output=dist deps=true lint=false
while [ $# -gt 0 ]; do
    case $1 in
    --arch) arch=${2:?--arch needs a name}; shift 2 ;;
    --build) build=${2:?--build needs a directory}; shift 2 ;;
    --output) output=${2:?--output needs a directory}; shift 2 ;;
    --no-deps) deps=false; shift ;;
    --lint) lint=true; shift ;;
    -h | --help) sed -n '2,/^set -e/{/^set -e/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
    *) echo "package: unknown option: $1 (see --help)" >&2; exit 2 ;;
    esac
done
die() { printf 'package: FAILED: %s\n' "$*" >&2; exit 1; }

preset=package tool=""
case $arch in
x86_64) debian=amd64 ;;
aarch64) debian=arm64 ;;
*) die "no recipe for the architecture $arch" ;;
esac
if [ "$arch" != "$(uname -m)" ]; then
    preset=package-$arch
    tool=$arch-linux-gnu-
fi
if $deps; then scripts/deps.sh --arch "$arch" --with package; fi
if [ -z "$build" ]; then
    build=build/$preset
    configureAndBuild "$preset" zyr_programs || die "the build"
fi

version=$(sed -n 's/^project(.* VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
release=$(. /etc/os-release && echo "${VERSION_ID:-0}")
codename=$(. /etc/os-release && echo "${VERSION_CODENAME:-unstable}")
fullVersion=$version~deb$release
if [ -z "${SOURCE_DATE_EPOCH:-}" ]; then
    SOURCE_DATE_EPOCH=$(git log -1 --format=%ct 2>/dev/null || stat -c %Y CHANGELOG.md)
fi
export SOURCE_DATE_EPOCH LC_ALL=C TZ=UTC
maintainer="${DEBFULLNAME:-The authors of the Zyrmont FFmpeg plug-in} <${DEBEMAIL:-zyrmont@localhost.localdomain}>"

work=$(mktemp -d "${TMPDIR:-/tmp}/zyr-package.XXXXXX")
trap 'rm -rf "$work"' EXIT
umask 022

# ---- what was built, in the shape of an installed system ----------------------------------------------------------------
all=$work/all
DESTDIR=$all cmake --install "$build" --prefix /usr >"$work/install.log" 2>&1 ||
    { tail -n 5 "$work/install.log" >&2; die "cmake --install"; }
mkdir -p "$all/usr/share/doc/libzyrmont-dev"
cp -r examples "$all/usr/share/doc/libzyrmont-dev/examples"
mkdir -p "$all"/usr/share/{bash-completion/completions,zsh/vendor-completions,fish/vendor_completions.d}
ffmpeg=$(sed -n 's/^ZYR_FFMPEG_PREFIX_USED:INTERNAL=//p' "$build/CMakeCache.txt")
host=$build/bin/zyr-host
[ -z "$tool" ] || host="qemu-$arch-static $host"
# In the build's own directory it does not find the FFmpeg that travels along.
[ -z "$ffmpeg" ] || export LD_LIBRARY_PATH=$ffmpeg/lib
for place in bash:bash-completion/completions/zyr-host zsh:zsh/vendor-completions/_zyr-host fish:fish/vendor_completions.d/zyr-host.fish; do
    $host completion "${place%%:*}" >"$all/usr/share/${place#*:}" || die "the completion for ${place%%:*}"
done
gzip -9n "$all"/usr/share/man/man1/*.1
mkdir -p "$all/usr/lib/systemd/system"
cp packaging/zyr-host-serve@.service "$all/usr/lib/systemd/system/"

# FFmpeg of our own travels along; each file finds it from where it stands itself.
unset LD_LIBRARY_PATH
setRpath() {
    "${tool}readelf" -d "$2" | grep -qE 'R(UN)?PATH' || return 0 # It needs no FFmpeg.
    cmake -DFILE="$2" -DRPATH="$1" -P packaging/rpath.cmake >/dev/null || die "the search path of $2"
}
if [ -n "$ffmpeg" ]; then
    own=$all/usr/lib/zyrmont/ffmpeg
    mkdir -p "$own"
    for library in avcodec avformat avutil swscale; do
        file=$(echo "$ffmpeg"/lib/lib$library.so.[0-9]*)
        file=${file%% *} # The short name is a link to the long one.
        cp -L "$file" "$own/$(basename "$file")"
        setRpath "\$ORIGIN" "$own/$(basename "$file")"
    done
    setRpath "\$ORIGIN/../lib/zyrmont/ffmpeg" "$all/usr/bin/zyr-host"
    for file in "$all"/usr/lib/zyrmont/*.so; do setRpath "\$ORIGIN/ffmpeg" "$file"; done
    for file in "$all"/usr/lib/zyrmont/plugins/*.so; do setRpath "\$ORIGIN/../ffmpeg" "$file"; done
fi

# Debug symbols go where debuggers look for them, by the number of the build.
for file in "$all/usr/bin/zyr-host" "$all"/usr/lib/zyrmont/*.so "$all"/usr/lib/zyrmont/plugins/*.so "$all"/usr/lib/zyrmont/ffmpeg/*; do
    [ -f "$file" ] || continue
    id=$("${tool}readelf" -n "$file" | sed -n 's/.*Build ID: //p')
    if [ -n "$id" ] && "${tool}readelf" -SW "$file" | grep -q '\.debug_info'; then
        symbols=$all/usr/lib/debug/.build-id/${id:0:2}/${id:2}.debug
        mkdir -p "$(dirname "$symbols")"
        "${tool}objcopy" --only-keep-debug --compress-debug-sections "$file" "$symbols"
        chmod 644 "$symbols"
    fi
    "${tool}strip" --strip-unneeded --remove-section=.comment "$file"
    case $file in *.so* ) chmod 644 "$file" ;; esac
done
own=()
[ -z "$ffmpeg" ] || own=(--ffmpeg "$all/usr/lib/zyrmont/ffmpeg")
scripts/linked.sh "${own[@]}" "$all/usr/bin/zyr-host" "$all"/usr/lib/zyrmont/*.so "$all"/usr/lib/zyrmont/plugins/*.so ||
    die "docs/third-party.md"
"${tool}strip" --strip-debug --enable-deterministic-archives --remove-section=.comment "$all"/usr/lib/*.a

# ---- one package ---------------------------------------------------------------------------------------------------------
# take PACKAGE PATH...: moves paths of the whole into the package.
take() {
    local package=$1 path
    shift
    for path in "$@"; do
        mkdir -p "$work/$package/$(dirname "$path")"
        mv "$all/$path" "$work/$package/$path"
    done
}

# needs PACKAGE: the packages with the shared libraries of its files.
needs() {
    mkdir -p "$work/needs/debian"
    printf 'Source: zyrmont\nMaintainer: %s\n\nPackage: %s\nArchitecture: any\n' "$maintainer" "$1" >"$work/needs/debian/control"
    local files=()
    mapfile -t files < <(find "$work/$1/usr/bin" "$work/$1/usr/lib/zyrmont" -type f 2>/dev/null | sort)
    (cd "$work/needs" && DEB_HOST_ARCH=$debian dpkg-shlibdeps -O --ignore-missing-info \
        -l"$work/zyrmont-modules/usr/lib/zyrmont/ffmpeg" "${files[@]/#/-e}" 2>"$work/needs.log") |
        sed -n 's/^shlibs:Depends=//p' || { cat "$work/needs.log" >&2; die "dpkg-shlibdeps for $1"; }
}

# pack PACKAGE SECTION "fields" "short description" "long description"
pack() {
    local root=$work/$1 doc=$work/$1/usr/share/doc/$1
    mkdir -p "$root/DEBIAN" "$doc"
    cp packaging/copyright "$doc/copyright"
    if [ -d "$root/usr/lib/zyrmont/ffmpeg" ]; then cat packaging/copyright-ffmpeg >>"$doc/copyright"; fi
    gzip -9nc CHANGELOG.md >"$doc/CHANGELOG.md.gz"
    printf 'zyrmont (%s) %s; urgency=medium\n\n  * See CHANGELOG.md.gz.\n\n -- %s  %s\n' "$fullVersion" "$codename" \
        "$maintainer" "$(date -R -d "@$SOURCE_DATE_EPOCH")" | gzip -9nc >"$doc/changelog.gz"
    mkdir -p "$root/usr/share/lintian/overrides"
    grep -E "^(#|$1:)" packaging/lintian-overrides >"$root/usr/share/lintian/overrides/$1"
    (cd "$root" && find usr -type f -print0 | sort -z | xargs -0 md5sum) >"$root/DEBIAN/md5sums"
    if [ -f "packaging/$1.postrm" ]; then install -m 755 "packaging/$1.postrm" "$root/DEBIAN/postrm"; fi
    {
        printf 'Package: %s\nSource: zyrmont\nVersion: %s\nArchitecture: %s\nMaintainer: %s\n' "$1" "$fullVersion" "$debian" "$maintainer"
        printf 'Installed-Size: %s\n' "$(installedKilobytes "$root/usr")"
        [ -z "$3" ] || printf '%s\n' "$3"
        printf 'Section: %s\nPriority: optional\nDescription: %s\n' "$2" "$4"
        fold -s -w 76 <<<"$5" | sed 's/ *$//; s/^/ /'
    } >"$root/DEBIAN/control"
    # Nothing may tell who built it: owners, times and modes are the same everywhere.
    chmod -R u=rwX,go=rX "$root"
    find "$root" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
    local file=$output/$1_${fullVersion}_$debian.deb
    # Debug symbols are compressed already; more takes minutes and gains nothing.
    local compression=(-Zxz)
    [ "$2" != debug ] || compression=(-Zgzip -z1)
    # One thread: with more of them xz cuts the data into other blocks.
    dpkg-deb --root-owner-group "${compression[@]}" --threads-max=1 --build "$root" "$file" >/dev/null || die "dpkg-deb for $1"
    printf '%-17s %7s KiB installed  %s\n' "$1" "$(installedKilobytes "$root/usr")" "$file"
    files+=("$file")
}

mkdir -p "$output"
files=()
take zyrmont-host usr/share/zyrmont/live usr/lib/systemd
take zyrmont-modules usr/lib/zyrmont usr/share/zyrmont
take zyrmont-host usr/bin usr/share/man usr/share/bash-completion usr/share/zsh usr/share/fish
take libzyrmont-dev usr/include usr/lib/cmake usr/lib/pkgconfig usr/share/doc/libzyrmont-dev
for archive in "$all"/usr/lib/*.a; do take libzyrmont-dev "usr/lib/$(basename "$archive")"; done
[ ! -d "$all/usr/lib/debug" ] || take zyrmont-dbgsym usr/lib/debug
left=$(find "$all" -type f)
[ -z "$left" ] || die "no package takes $left"

suggests=""
[ -z "$ffmpeg" ] || suggests=$'\nSuggests: intel-media-va-driver | mesa-va-drivers'
miniz=""
grep -q 'zyr_miniz' "$work/libzyrmont-dev/usr/lib/pkgconfig/zyrmont.pc" || miniz=", libminiz-dev"
pack zyrmont-modules libs "Depends: $(needs zyrmont-modules)$suggests" \
    "modules and codec plug-ins of the Zyrmont framework" \
    "Core and picture modules, and plug-ins that code video: VP9, H.264 and MPEG-1 through FFmpeg, in software or through VAAPI, and lossless blocks for screens."
pack zyrmont-host video "Depends: zyrmont-modules (= $fullVersion), $(needs zyrmont-host)
Suggests: x11-utils, xvfb" \
    "host program of the Zyrmont codec plug-ins" \
    "zyr-host shows which video codecs work on this machine, tells what is wrong with it and what cures it, and sends video through the codecs frame by frame."
pack libzyrmont-dev libdevel "Depends: liblz4-dev, libxxhash-dev, libsystemd-dev, libpam0g-dev, pkgconf$miniz
Recommends: zyrmont-modules (= $fullVersion), cmake" \
    "headers and libraries for Zyrmont modules and hosts" \
    "What is needed to build modules, plug-ins and hosts of the Zyrmont framework: headers, static libraries, a CMake package, a pkg-config file, and an example of a plug-in and of a host."
if [ -d "$work/zyrmont-dbgsym" ]; then
    pack zyrmont-dbgsym debug "Depends: zyrmont-modules (= $fullVersion)" \
        "debug symbols of the Zyrmont packages" \
        "Debuggers find these by the numbers of the builds of zyr-host, the modules and the plug-ins."
fi

# ---- what it weighs ------------------------------------------------------------------------------------------------------
weigh() { du -k -s --apparent-size "$@" | awk '{ sum += $1 } END { print sum }'; }
size=$(weigh "$work"/zyrmont-host/usr "$work"/zyrmont-modules/usr)
if [ -d "$work/zyrmont-modules/usr/lib/zyrmont/ffmpeg" ]; then
    size=$((size - $(weigh "$work/zyrmont-modules/usr/lib/zyrmont/ffmpeg")))
fi
printf 'host and modules take %d.%d MB without FFmpeg\n' $((size * 1024 / 1000000)) $((size * 1024 / 100000 % 10))
if [ $((size * 1024)) -gt 15000000 ]; then
    echo "that is more than 15 MB; what is largest:"
    find "$work"/zyrmont-{host,modules}/usr -type f -printf '%10s  /%P\n' | sort -rn | head -n 10
fi
scripts/package-contents.sh "$output" "$debian" || die "scripts/package-contents.sh"
(cd "$output" && sha256sum "${files[@]##*/}" >SHA256SUMS)

if $lint; then
    command -v lintian >/dev/null || die "lintian is not installed (Debian package lintian)"
    # The instance of somebody: what is offered to the service is at most 2.5 of 10.
    cp packaging/zyr-host-serve@.service "$work/zyr-host-serve@ada.service"
    systemd-analyze security --offline=true --threshold=25 "$work/zyr-host-serve@ada.service" >"$work/exposure" ||
        { cat "$work/exposure"; die "the service is exposed"; }
    tail -n 1 "$work/exposure"
    lintian --allow-root --fail-on error,warning --tag-display-limit 0 "${files[@]}" || die "lintian"
    echo "lintian has nothing to say"
fi
