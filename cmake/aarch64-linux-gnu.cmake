# Cross-building for 64-bit ARM with Debian's cross compiler and arm64 packages (scripts/deps.sh --arch aarch64).
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_FIND_PACKAGE_PREFER_CONFIG ON)
# Only the arm64 packages' own descriptions and those that belong to no architecture.
set(ENV{PKG_CONFIG_LIBDIR} "/usr/lib/aarch64-linux-gnu/pkgconfig:/usr/share/pkgconfig")
# Without -L: the arm64 packages' loader stands at its usual place. With the cross compiler's tree as prefix, two builds of
# the C library would meet in one process, and threads and fork hang.
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64-static)
