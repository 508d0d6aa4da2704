# Compiler options of every target, in one place.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# Installed files find the FFmpeg that they were linked with.
set(CMAKE_INSTALL_RPATH_USE_LINK_PATH ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")

option(ZYR_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)
option(ZYR_COVERAGE "Count what is executed, for scripts/coverage.sh; with GCC" OFF)
set(ZYR_SANITIZE "" CACHE STRING "Sanitizers, as in -fsanitize= (empty: none)")

option(ZYR_UNITY "Compile the sources under src several at a time: half of the compiler's work" OFF)
set(ZYR_UNITY_SIZE 12 CACHE STRING "How many sources are compiled as one with ZYR_UNITY")
option(ZYR_TESTS_TOGETHER "Run many tests in one process, where a process takes longer to start than most tests" OFF)
option(ZYR_PACKAGE_PATHS "Look for FFmpeg where packages put it, and nowhere else" OFF)
option(ZYR_BUILD_TIMES "Log what each compilation costs, for scripts/build-times.sh" OFF)
find_program(ZYR_CCACHE ccache)
if(NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(launcher)
    if(ZYR_CCACHE)
        # Results are shared between clones of the tree: paths inside it are seen relative to it. Precompiled headers are
        # compared by their contents.
        set(launcher /usr/bin/env "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1
            CCACHE_SLOPPINESS=pch_defines,time_macros "${ZYR_CCACHE}")
    endif()
    if(ZYR_BUILD_TIMES)
        list(PREPEND launcher "${PROJECT_SOURCE_DIR}/scripts/time-compiler.sh" "${CMAKE_BINARY_DIR}/compile-times.log")
    endif()
    set(CMAKE_CXX_COMPILER_LAUNCHER "${launcher}")
    set(CMAKE_C_COMPILER_LAUNCHER "${launcher}")
endif()

add_library(zyr_options INTERFACE)
set_target_properties(zyr_options PROPERTIES EXPORT_NAME options)
target_compile_options(zyr_options INTERFACE
    $<BUILD_INTERFACE:-Wall>
    $<BUILD_INTERFACE:-Wextra>
    $<BUILD_INTERFACE:-Wshadow>
    $<BUILD_INTERFACE:-Wnon-virtual-dtor>
    # Records with an empty base pass differently there since GCC 10.1, which is older than any compiler in use: no news.
    $<$<STREQUAL:${CMAKE_SYSTEM_PROCESSOR},aarch64>:-Wno-psabi>
    # The bits of every result are the same on AArch64 and x86-64 only without silent fusing.
    -ffp-contract=off
    # Casts and sums of signed integers wrap, as the target's instructions do.
    -fwrapv
    # Each module has its own statics; gnu-unique symbols would be shared and keep dlclose from unloading.
    $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>
    # Clang calls libatomic for the log level, a packed member that lies within an aligned word, and says so.
    $<$<CXX_COMPILER_ID:Clang>:-Wno-atomic-alignment>
    -fvisibility=hidden
    $<$<COMPILE_LANGUAGE:CXX>:-fvisibility-inlines-hidden>
    # Assertion texts carry paths relative to the source tree.
    $<BUILD_INTERFACE:-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=>)
target_compile_features(zyr_options INTERFACE cxx_std_20)
target_link_libraries(zyr_options INTERFACE $<$<CXX_COMPILER_ID:Clang>:atomic>)
if(ZYR_WARNINGS_AS_ERRORS)
    target_compile_options(zyr_options INTERFACE $<BUILD_INTERFACE:-Werror>)
endif()
if(ZYR_SANITIZE)
    # Packed records are read in place, so misaligned access is by design.
    target_compile_options(zyr_options INTERFACE -fsanitize=${ZYR_SANITIZE} -fno-omit-frame-pointer)
    target_link_options(zyr_options INTERFACE -fsanitize=${ZYR_SANITIZE})
    if(ZYR_SANITIZE MATCHES undefined)
        target_compile_options(zyr_options INTERFACE -fno-sanitize=alignment -fno-sanitize-recover=all
            # Its cache stands in the program, where Clang's modules don't find it.
            $<$<CXX_COMPILER_ID:Clang>:-fno-sanitize=vptr>)
    endif()
endif()
if(ZYR_COVERAGE)
    target_compile_options(zyr_options INTERFACE
        $<BUILD_INTERFACE:--coverage> $<BUILD_INTERFACE:-fprofile-update=atomic> $<BUILD_INTERFACE:-fdata-sections>)
    # One file of counters for all processes, so that each is counted however it ends.
    add_library(zyr_shared_counters OBJECT "${PROJECT_SOURCE_DIR}/tests/coverage/zyr_shared_counters.cpp")
    file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/counters")
    file(CHMOD "${CMAKE_BINARY_DIR}/counters" DIRECTORY_PERMISSIONS
        OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_WRITE GROUP_EXECUTE WORLD_READ WORLD_WRITE WORLD_EXECUTE)
    target_compile_definitions(zyr_shared_counters PRIVATE ZYR_COUNTERS_DIRECTORY="${CMAKE_BINARY_DIR}/counters")
    target_link_libraries(zyr_options INTERFACE "$<BUILD_INTERFACE:$<TARGET_OBJECTS:zyr_shared_counters>>")
    target_link_options(zyr_options INTERFACE
        $<BUILD_INTERFACE:--coverage> $<BUILD_INTERFACE:-Wl,--build-id> $<BUILD_INTERFACE:-Wl,--wrap=__gcov_exit>
        "$<BUILD_INTERFACE:-Wl,-T,${PROJECT_SOURCE_DIR}/tests/coverage/counters.ld>")
endif()
target_include_directories(zyr_options INTERFACE "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/src>")
