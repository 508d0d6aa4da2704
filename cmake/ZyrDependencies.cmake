# Where the third-party libraries come from. scripts/deps.sh installs what a machine lacks.
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
if(ZYR_BUILD_TESTS)
    find_package(GTest REQUIRED)
endif()
pkg_check_modules(LZ4 REQUIRED IMPORTED_TARGET liblz4)
pkg_check_modules(XXHASH REQUIRED IMPORTED_TARGET libxxhash)
