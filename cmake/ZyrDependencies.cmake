# Where the third-party libraries come from. scripts/deps.sh installs what a machine lacks, and leaves a note about the
# libraries that it built itself (deps-<architecture>.cmake in its cache folder), which is read here.
#
# Targets to link:
#   ZYR::avcodec  ZYR::avutil  ZYR::swscale  ZYR::avformat    FFmpeg 7.x
#   ZYR::lz4      ZYR::xxhash  ZYR::miniz                     compressors and hashes
#   ZYR::pam      ZYR::systemd                                authentication, login sessions
#   ZYR::yuv                                                  libyuv, pixel conversions
#   ZYR::openssl  ZYR::wslay                                  TLS and WebSocket of the core module
#   ZYR::cli11    ZYR::json    ZYR::png                       command line, JSON and PNG of the host
#   ZYR::xcb                                                  X screens of the host
#   GTest::gtest_main  GTest::gmock  ZYR::pugixml             with ZYR_BUILD_TESTS
#   ZYR::vpx      ZYR::va      ZYR::drm                       with ZYR_BUILD_TESTS, for the VA driver of the tests
#   benchmark::benchmark                                      with ZYR_BUILD_BENCH
#   Threads::Threads
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

# ---- the folder of scripts/deps.sh ------------------------------------------------------------------------------------
if(DEFINED ENV{ZYR_DEPS_DIR})
    set(zyrDepsDir "$ENV{ZYR_DEPS_DIR}")
elseif(DEFINED ENV{XDG_CACHE_HOME})
    set(zyrDepsDir "$ENV{XDG_CACHE_HOME}/zyrmont-deps")
elseif(DEFINED ENV{HOME})
    set(zyrDepsDir "$ENV{HOME}/.cache/zyrmont-deps")
else()
    file(REAL_PATH "~/.cache/zyrmont-deps" zyrDepsDir EXPAND_TILDE)
endif()
set(ZYR_FFMPEG_PREFIX "")
set(ZYR_MINIZ_DIR "")
set(zyrDepsNote "${zyrDepsDir}/deps-${CMAKE_SYSTEM_PROCESSOR}.cmake")
include("${zyrDepsNote}" OPTIONAL)
# A new note (another FFmpeg) is noticed by the next build.
if(EXISTS "${zyrDepsNote}")
    set_property(DIRECTORY "${PROJECT_SOURCE_DIR}" APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${zyrDepsNote}")
endif()
if(ZYR_FFMPEG_PREFIX)
    set(ENV{PKG_CONFIG_PATH} "${ZYR_FFMPEG_PREFIX}/lib/pkgconfig:$ENV{PKG_CONFIG_PATH}")
endif()
if(NOT "${ZYR_FFMPEG_PREFIX}" STREQUAL "${ZYR_FFMPEG_PREFIX_USED}")
    # The cached answers of pkg-config belong to the FFmpeg of the last time.
    get_cmake_property(zyrCached CACHE_VARIABLES)
    foreach(variable IN LISTS zyrCached)
        if(variable MATCHES "^(__pkg_config_checked_|pkgcfg_lib_)?zyr_(avcodec|avutil|swscale|avformat)(_|$)")
            unset(${variable} CACHE)
        endif()
    endforeach()
    set(ZYR_FFMPEG_PREFIX_USED "${ZYR_FFMPEG_PREFIX}" CACHE INTERNAL "")
endif()

# ---- one library through pkg-config ----------------------------------------------------------------------------------
# zyr_pkg(name "Debian package" module-spec...): the target ZYR::<name>, or an error that says what is missing.
function(zyr_pkg name package)
    pkg_check_modules(zyr_${name} QUIET IMPORTED_TARGET ${ARGN})
    if(NOT zyr_${name}_FOUND)
        message(FATAL_ERROR "Missing: ${ARGN} (Debian package ${package}). scripts/deps.sh installs everything.")
    endif()
    if(ZYR_PACKAGE_PATHS)
        get_target_property(options PkgConfig::zyr_${name} INTERFACE_LINK_OPTIONS)
        if(options)
            list(FILTER options EXCLUDE REGEX "-rpath")
            set_target_properties(PkgConfig::zyr_${name} PROPERTIES INTERFACE_LINK_OPTIONS "${options}")
        endif()
    endif()
    add_library(zyr_dep_${name} INTERFACE)
    target_link_libraries(zyr_dep_${name} INTERFACE PkgConfig::zyr_${name})
    add_library(ZYR::${name} ALIAS zyr_dep_${name})
    foreach(version IN ITEMS "${zyr_${name}_VERSION}" "${zyr_${name}_lib${name}_VERSION}")
        if(version)
            message(STATUS "Using ${name} ${version}")
            break()
        endif()
    endforeach()
endfunction()

zyr_pkg(avutil "libavutil-dev" "libavutil>=59" "libavutil<60")
zyr_pkg(avcodec "libavcodec-dev" "libavcodec>=61" "libavcodec<62")
zyr_pkg(swscale "libswscale-dev" "libswscale>=8" "libswscale<9")
zyr_pkg(avformat "libavformat-dev" "libavformat>=61" "libavformat<62")
foreach(name avcodec swscale avformat)
    target_link_libraries(zyr_dep_${name} INTERFACE zyr_dep_avutil)
endforeach()
zyr_pkg(lz4 "liblz4-dev" liblz4)
zyr_pkg(xxhash "libxxhash-dev" libxxhash)
zyr_pkg(systemd "libsystemd-dev" libsystemd)
zyr_pkg(json "nlohmann-json3-dev" nlohmann_json)
zyr_pkg(cli11 "libcli11-dev" CLI11)
zyr_pkg(png "libpng-dev" libpng)
zyr_pkg(openssl "libssl-dev" "openssl>=3")
# Without X the host does all but show live screens.
set(zyrXcb xcb xcb-shm xcb-damage xcb-xfixes xcb-randr xcb-xtest)
pkg_check_modules(zyr_found_xcb QUIET ${zyrXcb})
if(zyr_found_xcb_FOUND)
    zyr_pkg(xcb "libxcb-shm0-dev libxcb-damage0-dev libxcb-xfixes0-dev libxcb-randr0-dev libxcb-xtest0-dev" ${zyrXcb})
else()
    message(STATUS "No libxcb with its extensions: 'zyr-host serve' and 'zyr-host view' are left out")
endif()

# ---- libraries by their files ------------------------------------------------------------------------------------------
# zyr_library(name "Debian package" header library [another file name]...): the target ZYR::<name>.
function(zyr_library name package header library)
    find_path(ZYR_${name}_INCLUDE_DIR "${header}")
    find_library(ZYR_${name}_LIBRARY NAMES "${library}" ${ARGN})
    if(NOT ZYR_${name}_INCLUDE_DIR OR NOT ZYR_${name}_LIBRARY)
        message(FATAL_ERROR "Missing: ${library} (Debian package ${package}). scripts/deps.sh installs everything.")
    endif()
    add_library(ZYR::${name} UNKNOWN IMPORTED GLOBAL)
    set_target_properties(ZYR::${name} PROPERTIES IMPORTED_LOCATION "${ZYR_${name}_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${ZYR_${name}_INCLUDE_DIR}")
endfunction()

# Neither a .pc file nor a CMake configuration.
zyr_library(yuv "libyuv-dev" libyuv.h yuv)
# Debian 13's pam.pc asks for the description of a library that its package does not bring.
zyr_library(pam "libpam0g-dev" security/pam_appl.h pam)
# A .pc file in some releases only. A cross-build has the runtime package alone.
zyr_library(wslay "libwslay-dev" wslay/wslay.h wslay libwslay.so.1)

# ---- miniz: the system's, or the two files that scripts/deps.sh left ---------------------------------------------------
pkg_check_modules(zyr_miniz QUIET IMPORTED_TARGET miniz)
if(zyr_miniz_FOUND)
    add_library(ZYR::miniz ALIAS PkgConfig::zyr_miniz)
elseif(ZYR_MINIZ_DIR AND EXISTS "${ZYR_MINIZ_DIR}/miniz.c")
    add_library(zyr_miniz STATIC "${ZYR_MINIZ_DIR}/miniz.c")
    target_include_directories(zyr_miniz SYSTEM PUBLIC "$<BUILD_INTERFACE:${ZYR_MINIZ_DIR}>")
    # Its archive reader and writer for files are not used.
    target_compile_definitions(zyr_miniz PUBLIC MINIZ_NO_STDIO MINIZ_NO_ARCHIVE_APIS MINIZ_NO_TIME)
    target_compile_options(zyr_miniz PRIVATE -w -O2 -fvisibility=hidden
        # Debug symbols don't tell where this machine keeps it.
        "-ffile-prefix-map=${ZYR_MINIZ_DIR}=miniz")
    add_library(ZYR::miniz ALIAS zyr_miniz)
else()
    message(FATAL_ERROR "Missing: miniz. scripts/deps.sh puts it into ${zyrDepsDir}.")
endif()

# ---- tests and benchmarks ----------------------------------------------------------------------------------------------
if(ZYR_BUILD_TESTS)
    find_package(GTest REQUIRED)
    zyr_pkg(pugixml "libpugixml-dev" pugixml)
    zyr_pkg(vpx "libvpx-dev" vpx)
    zyr_pkg(va "libva-dev" libva)
    zyr_pkg(drm "libdrm-dev" libdrm)
    # Known leaks of libraries. A leak inside FFmpeg can only be told by its function where FFmpeg keeps names and frame
    # pointers, as the one that scripts/deps.sh builds does; of another one, all is ignored.
    file(READ "${PROJECT_SOURCE_DIR}/tests/support/lsan.supp" knownLeaks)
    if(NOT ZYR_FFMPEG_PREFIX)
        string(APPEND knownLeaks "leak:libavutil.so\nleak:libavcodec.so\nleak:libva.so\n")
    endif()
    file(WRITE "${CMAKE_BINARY_DIR}/lsan.supp" "${knownLeaks}")
endif()
if(ZYR_BUILD_BENCH)
    find_package(benchmark REQUIRED)
endif()
