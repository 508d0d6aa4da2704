#!/usr/bin/env bash
# Installs what the build needs, says what it does, and costs nothing when everything is there already.
#
#   scripts/deps.sh                    what the build needs on this machine
#   scripts/deps.sh --with test        also what the tests run (ffmpeg and ffprobe as judges, an X server, ...)
#   scripts/deps.sh --with lint        also clang-format, clang-tidy and shellcheck
#   scripts/deps.sh --with abi         also what compares modules of two builds
#   scripts/deps.sh --with docs        also what makes the site of documents and reference
#   scripts/deps.sh --with bench       also the peers that the benchmarks measure against
#   scripts/deps.sh --with package     also what makes, checks and tries Debian packages
#   scripts/deps.sh --arch aarch64     what the AArch64 cross-build and its emulated runs need
#
# System packages come from apt-get (as root, or through sudo). FFmpeg 7.1 comes from the system where it has it; else it is
# built into a cache folder outside the tree, from the distribution's own source package of its next release. miniz comes
# from the system where it has it; else its two source files go into the same cache folder.
#
#   ZYR_DEPS_DIR       the cache folder (default: zyrmont-deps in the user's cache folder)
#   ZYR_FFMPEG_SOURCE  a release tarball of FFmpeg 7.1.5 (a file or an address), for systems without apt
#   ZYR_MINIZ_SOURCE   a folder that holds miniz.c and miniz.h, for systems without apt
set -euo pipefail

FFMPEG_VERSION=7.1.5
FFMPEG_SHA256=de668509caf9e35e3cd162473441fdb29538c6d96ed080292b3cf9e6fc5d558f
MINIZ_PACKAGE=vst3sdk # carries a copy of miniz in its vstgui4 tarball
NEXT_RELEASE=trixie   # the first Debian release with FFmpeg 7.1

say() { printf 'deps: %s\n' "$*"; }
die() { printf 'deps: FAILED: %s\n' "$*" >&2; exit 1; }

arch=$(uname -m)
nativeArch=$arch
with=" "
while [ $# -gt 0 ]; do
    case $1 in
    --arch) arch=${2:?--arch needs a name}; shift 2 ;;
    --with) with="$with${2:?--with needs a name} "; shift 2 ;;
    -h | --help) sed -n '2,/^set -e/{/^set -e/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
    *) die "unknown option: $1 (see --help)" ;;
    esac
done
case $arch in
x86_64 | aarch64) ;;
*) die "no recipe for the architecture $arch (x86_64 and aarch64 are known)" ;;
esac
wants() { case $with in *" $1 "*) return 0 ;; esac; return 1; }
cross=false
[ "$arch" = "$nativeArch" ] || cross=true

home=${HOME:-$(getent passwd "$(id -u)" | cut -d: -f6)}
cache=${ZYR_DEPS_DIR:-${XDG_CACHE_HOME:-$home/.cache}/zyrmont-deps}
mkdir -p "$cache" || die "cannot create the cache folder $cache"
exec 9>"$cache/.lock"
if ! flock -n 9; then
    say "another run is at work in $cache, waiting for it"
    flock 9
fi

haveApt=false
command -v apt-get >/dev/null && command -v dpkg-query >/dev/null && haveApt=true
work=$(mktemp -d "${TMPDIR:-/tmp}/zyr-deps.XXXXXX")
trap 'rm -rf "$work"' EXIT

# ---- system packages -------------------------------------------------------------------------------------------------

asRoot() {
    if [ "$(id -u)" = 0 ]; then "$@"
    elif command -v sudo >/dev/null; then sudo "$@"
    else die "root is needed for: $*"
    fi
}

aptUpdated=false
aptUpdate() {
    $aptUpdated && return 0
    say "refreshing the package lists"
    asRoot apt-get -qq -o DPkg::Lock::Timeout=600 update >"$work/apt.log" 2>&1 ||
        { tail -n 20 "$work/apt.log" >&2; die "apt-get update (its last lines are above)"; }
    aptUpdated=true
}

# A plain name means this machine's own architecture, or none at all.
isInstalled() {
    local architecture
    case $1 in
    *:*) architecture=${1#*:} ;;
    *) architecture="($(dpkg --print-architecture)|all)" ;;
    esac
    dpkg-query -W -f '${Architecture} ${db:Status-Status}\n' "$1" 2>/dev/null | grep -qE "^$architecture installed$"
}

# Installs those of the named packages that are missing; nothing is asked of the network when none is.
installPackages() {
    local missing=() package
    $haveApt || { say "no apt-get here: these are expected to be installed already: $*"; return 0; }
    for package in "$@"; do
        isInstalled "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    aptUpdate
    say "installing ${missing[*]}"
    asRoot env DEBIAN_FRONTEND=noninteractive apt-get -qq -y -o DPkg::Lock::Timeout=600 \
        --no-install-recommends --no-remove install "${missing[@]}" >"$work/apt.log" 2>&1 ||
        { tail -n 20 "$work/apt.log" >&2; die "apt-get install ${missing[*]} (its last lines are above)"; }
}

# The version that apt would install, or nothing.
candidate() { apt-cache policy "$1" 2>/dev/null | sed -n 's/^ *Candidate: *//p' | grep -v none || true; }

# The package with the shared library of a development package.
runtimeOf() {
    local depends
    depends=$(apt-cache depends "$1" 2>/dev/null) || { aptUpdate; depends=$(apt-cache depends "$1"); }
    sed -n "s/.*Depends: \(${1%-dev}[0-9].*\)/\1/p" <<<"$depends" | head -n 1
}

tools=(ca-certificates cmake g++ gcc make ninja-build ccache pkg-config nasm xz-utils tar git file binutils)
libraries=(libvpx-dev libva-dev libdrm-dev libx11-dev libxext-dev libxv-dev zlib1g-dev libssl-dev libpam0g-dev libsystemd-dev liblz4-dev libxxhash-dev
    libyuv-dev libpng-dev libxcb1-dev libxcb-shm0-dev libxcb-damage0-dev libxcb-xfixes0-dev libxcb-randr0-dev
    libxcb-xtest0-dev libpugixml-dev libgtest-dev libgmock-dev libbenchmark-dev)
headers=(libcli11-dev nlohmann-json3-dev libwslay-dev)

suffix=""
pkgConfigLibdir=""
if $cross; then
    [ "$nativeArch/$arch" = x86_64/aarch64 ] || die "cross-building for $arch from $nativeArch is not supported"
    $haveApt || die "the cross-build needs apt-get for the arm64 packages"
    suffix=:arm64
    pkgConfigLibdir=/usr/lib/aarch64-linux-gnu/pkgconfig:/usr/share/pkgconfig
    if ! dpkg --print-foreign-architectures | grep -qx arm64; then
        say "adding the architecture arm64 to dpkg"
        asRoot dpkg --add-architecture arm64
        aptUpdate
    fi
    # Its development packages cannot stand side by side: the headers are this machine's, the library is the runtime one.
    libraries+=("$(runtimeOf libwslay-dev)")
    tools+=(gcc-aarch64-linux-gnu g++-aarch64-linux-gnu qemu-user-static)
fi
installPackages "${tools[@]}" "${headers[@]}" "${libraries[@]/%/$suffix}"
wants test && installPackages chromium ffmpeg openssl curl python3-websockets python3-jsonschema python3-markdown jq libxml2-utils xvfb xterm qemu-user-static locales nodejs
wants lint && installPackages clang-format clang-tidy python3 shellcheck
wants abi && installPackages abigail-tools
wants docs && installPackages doxygen python3-markdown man-db
wants package && installPackages dpkg-dev lintian mmdebstrap systemd
wants bench && installPackages libspdlog-dev libtsl-ordered-map-dev libtbb-dev libeigen3-dev libglm-dev libvncserver-dev \
    x11vnc tigervnc-standalone-server novnc websockify \
    libprotobuf-dev protobuf-compiler libmsgpack-cxx-dev rapidjson-dev

pkgConfig() {
    if $cross; then PKG_CONFIG_LIBDIR=$pkgConfigLibdir pkg-config "$@"; else pkg-config "$@"; fi
}

# ---- files from the distribution's next release ----------------------------------------------------------------------

# Prepares an apt configuration of our own in $work/apt: the machine's mirror and keyring, the next release's sources.
# The system's configuration and lists are not touched.
prepareSourceLists() {
    [ -n "${sourceListsReady:-}" ] && return 0
    local dir=$work/apt mirror options=""
    mirror=$(apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' 2>/dev/null |
        awk '$3 == "main" && $2 !~ /-/ && $1 ~ /debian/ { print $1; exit }')
    [ -n "$mirror" ] || mirror=$(cat /etc/apt/sources.list /etc/apt/sources.list.d/* 2>/dev/null |
        grep -oE '(https?|file)://[^ ]*/debian/?' | head -n 1)
    [ -n "$mirror" ] || die "no Debian mirror in this machine's apt sources: set ZYR_FFMPEG_SOURCE and ZYR_MINIZ_SOURCE"
    mkdir -p "$dir"/{lists/partial,cache/archives/partial,state,parts}
    touch "$dir/status"
    [ -e /usr/share/keyrings/debian-archive-keyring.gpg ] &&
        options="[signed-by=/usr/share/keyrings/debian-archive-keyring.gpg]"
    echo "deb-src $options $mirror $NEXT_RELEASE main" >"$dir/sources.list"
    cat >"$dir/apt.conf" <<CONF
Dir::Etc::sourcelist "$dir/sources.list";
Dir::Etc::sourceparts "$dir/parts";
Dir::State "$dir/state";
Dir::State::lists "$dir/lists";
Dir::State::status "$dir/status";
Dir::Cache "$dir/cache";
APT::Sandbox::User "$(id -un)";
CONF
    say "reading the source package lists of Debian $NEXT_RELEASE (in a private apt configuration)"
    APT_CONFIG=$dir/apt.conf apt-get -qq update >"$work/apt.log" 2>&1 ||
        { tail -n 20 "$work/apt.log" >&2; die "reading the source package lists (apt's last lines are above)"; }
    sourceListsReady=yes
}

# fetchSource PACKAGE PATTERN FILE: downloads the one file of a source package whose name matches, checked by apt's hash.
fetchSource() {
    local line uri hash
    prepareSourceLists
    line=$(APT_CONFIG=$work/apt/apt.conf apt-get -q --print-uris source "$1" 2>/dev/null | grep -E "^'[^']*' $2 " | head -n 1)
    [ -n "$line" ] || die "the source package $1 of Debian $NEXT_RELEASE holds no file $2"
    uri=$(cut -d"'" -f2 <<<"$line")
    hash=$(awk '{ print $NF }' <<<"$line")
    say "fetching $(awk '{ print $2 }' <<<"$line")"
    (cd "$work" && APT_CONFIG=$work/apt/apt.conf /usr/lib/apt/apt-helper download-file "$uri" "$3" "$hash") >"$work/apt.log" 2>&1 ||
        { tail -n 5 "$work/apt.log" >&2; die "fetching a file of the source package $1 (apt's last lines are above)"; }
}

# ---- FFmpeg ----------------------------------------------------------------------------------------------------------

list() { local option=$1 name; shift; for name in "$@"; do printf -- '--enable-%s=%s\n' "$option" "$name"; done; }

# What the plug-in's tables name, and what the host reads and writes. Names and frame pointers stay in, so that profiles and
# leak reports can tell which function of FFmpeg they mean.
ffmpegOptions() {
    echo --enable-shared --disable-static --enable-pic --enable-rpath --disable-programs --disable-doc --enable-network \
        --disable-autodetect --disable-everything --disable-avdevice --disable-avfilter --disable-swresample \
        --disable-debug --disable-stripping --extra-cflags=-fno-omit-frame-pointer --enable-pthreads --enable-libvpx --enable-vaapi --enable-libdrm --enable-xlib --enable-zlib
    list encoder libvpx_vp9 vp9_vaapi h264_vaapi mpeg1video png mjpeg rawvideo ppm
    list decoder vp9 libvpx_vp9 vp8 libvpx_vp8 h264 hevc mpeg1video mpeg2video mpegvideo mpeg4 msmpeg4v1 msmpeg4v2 msmpeg4v3 \
        h263 h263i h263p flv wmv1 wmv2 vc1 wmv3 theora vp3 vp5 vp6 vp6f mjpeg mjpegb png apng bmp gif tiff webp ppm pgm pgmyuv \
        rawvideo dvvideo ffv1 ffvhuff huffyuv utvideo prores dnxhd cinepak msvideo1 msrle qtrle svq1 svq3 rpza zmbv \
        mszh zlib v210 yuv4
    list hwaccel vp9_vaapi h264_vaapi
    list muxer ivf webm matroska mpeg1system mpeg1video h264 yuv4mpegpipe image2 image2pipe rawvideo mov mp4 avi null \
        rtp rtsp mpegts
    list demuxer ivf matroska mpegvideo mpegps mpegts avi mov flv asf ogg dv yuv4mpegpipe rawvideo h264 hevc m4v mjpeg gif apng \
        image2 image2pipe image_png_pipe image_jpeg_pipe image_bmp_pipe image_webp_pipe image_ppm_pipe image_pgm_pipe \
        image_tiff_pipe
    list parser vp9 vp8 h264 hevc mpegvideo mpeg4video mjpeg png h263 vc1 vp3 dvd_nav gif bmp webp av1
    list bsf vp9_superframe vp9_superframe_split vp9_raw_reorder vp9_metadata extract_extradata h264_mp4toannexb \
        hevc_mp4toannexb mpeg4_unpack_bframes null
    list protocol file pipe tcp udp rtp http
}

buildFfmpeg() {
    local prefix=$1 source options=() cc=gcc
    source=$work/ffmpeg.tar.xz
    if [ -n "${ZYR_FFMPEG_SOURCE:-}" ]; then
        case $ZYR_FFMPEG_SOURCE in
        *://*) say "fetching ZYR_FFMPEG_SOURCE"; curl -fsSLo "$source" "$ZYR_FFMPEG_SOURCE" || die "fetching ZYR_FFMPEG_SOURCE" ;;
        *) cp "$ZYR_FFMPEG_SOURCE" "$source" || die "reading ZYR_FFMPEG_SOURCE" ;;
        esac
        echo "$FFMPEG_SHA256  $source" | sha256sum --check --status || die "ZYR_FFMPEG_SOURCE is not FFmpeg $FFMPEG_VERSION's release"
    elif $haveApt; then
        fetchSource ffmpeg 'ffmpeg_7\.1[0-9.]*\.orig\.tar\.xz' "$source"
    else
        die "FFmpeg 7.1 is not installed: set ZYR_FFMPEG_SOURCE to the release tarball of $FFMPEG_VERSION"
    fi
    mkdir "$work/ffmpeg" && tar -xf "$source" -C "$work/ffmpeg" --strip-components=1 || die "unpacking FFmpeg"
    mapfile -t options < <(ffmpegOptions | tr ' ' '\n')
    command -v ccache >/dev/null && cc="ccache gcc"
    if $cross; then
        options+=(--enable-cross-compile --arch=aarch64 --target-os=linux --cross-prefix=aarch64-linux-gnu- --pkg-config=pkg-config)
        cc=${cc/gcc/aarch64-linux-gnu-gcc}
    fi
    say "building FFmpeg $(cat "$work/ffmpeg/VERSION" 2>/dev/null || cat "$work/ffmpeg/RELEASE") for $arch (one to three minutes)"
    (
        cd "$work/ffmpeg"
        if $cross; then export PKG_CONFIG_LIBDIR=$pkgConfigLibdir; fi
        ./configure --prefix="$prefix" --cc="$cc" "${options[@]}" && make -j"$(nproc)" && make install DESTDIR="$work/root"
    ) >"$work/ffmpeg.log" 2>&1 || {
        tail -n 20 "$work/ffmpeg.log" >&2
        tail -n 5 "$work/ffmpeg/ffbuild/config.log" >&2 2>/dev/null || true
        die "building FFmpeg (its last lines are above)"
    }
    grep -i '^WARNING' "$work/ffmpeg.log" | grep -v 'pkg-config' | head -n 5 || true
    rm -rf "$prefix" && mv "$work/root$prefix" "$prefix" || die "moving FFmpeg into $prefix"
}

ffmpegPrefix=""
systemHasFfmpeg() {
    pkgConfig --exists 'libavcodec >= 61' 'libavcodec < 62' 'libavutil >= 59' 'libavutil < 60' 'libswscale >= 8' 'libswscale < 9' \
        'libavformat >= 61' 'libavformat < 62' 2>/dev/null
}
if ! systemHasFfmpeg && $haveApt; then
    case $(candidate libavcodec-dev$suffix) in
    7:7.*) installPackages libavcodec-dev$suffix libavformat-dev$suffix libavutil-dev$suffix libswscale-dev$suffix ;;
    esac
fi
if systemHasFfmpeg; then
    say "FFmpeg: the system's, libavcodec $(pkgConfig --modversion libavcodec) for $arch"
else
    system=$(. /etc/os-release 2>/dev/null && echo "${ID:-linux}${VERSION_ID:-}")
    key=$( (ffmpegOptions; echo "$FFMPEG_VERSION $system $arch") | sha256sum | cut -c1-12)
    ffmpegPrefix=$cache/ffmpeg-$FFMPEG_VERSION-$arch-$key
    if [ -e "$ffmpegPrefix/lib/pkgconfig/libavcodec.pc" ]; then
        say "FFmpeg: already built in $ffmpegPrefix"
    else
        buildFfmpeg "$ffmpegPrefix"
        say "FFmpeg: built in $ffmpegPrefix"
    fi
fi

# ---- miniz -----------------------------------------------------------------------------------------------------------

minizDir=""
if pkgConfig --exists miniz 2>/dev/null; then
    say "miniz: the system's"
else
    minizDir=$cache/miniz
    if [ -e "$minizDir/miniz.c" ] && [ -e "$minizDir/miniz.h" ]; then
        say "miniz: already in $minizDir"
    else
        mkdir -p "$work/miniz"
        if [ -n "${ZYR_MINIZ_SOURCE:-}" ]; then
            cp "$ZYR_MINIZ_SOURCE/miniz.c" "$ZYR_MINIZ_SOURCE/miniz.h" "$work/miniz" || die "ZYR_MINIZ_SOURCE lacks miniz.c or miniz.h"
        elif $haveApt; then
            fetchSource "$MINIZ_PACKAGE" '[^ ]*orig-vstgui4\.tar\.gz' "$work/vstgui4.tar.gz"
            tar -xzf "$work/vstgui4.tar.gz" -C "$work/miniz" --wildcards --transform 's,.*/,,' \
                '*/uidescription/miniz/miniz.[ch]' || die "taking miniz out of the source package $MINIZ_PACKAGE"
        else
            die "miniz is not installed: set ZYR_MINIZ_SOURCE to a folder with miniz.c and miniz.h"
        fi
        rm -rf "$minizDir" && mv "$work/miniz" "$minizDir" || die "moving miniz into $minizDir"
        say "miniz: put into $minizDir"
    fi
fi

# What the build reads: cmake/ZyrDependencies.cmake includes this file.
cat >"$work/deps.cmake" <<CMAKE
# Written by scripts/deps.sh. Empty: the system's.
set(ZYR_FFMPEG_PREFIX "$ffmpegPrefix")
set(ZYR_MINIZ_DIR "$minizDir")
CMAKE
cmp -s "$work/deps.cmake" "$cache/deps-$arch.cmake" || mv "$work/deps.cmake" "$cache/deps-$arch.cmake"
say "everything for $arch is in place"
