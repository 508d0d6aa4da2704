# find_package(Zyrmont): what a module or host outside of the framework's tree builds on.
#
#   Zyrmont::common      the common library, static; a module gets it from zyr_add_module
#   Zyrmont::picture     codec records, negotiation, and the interfaces of frames, images, encoders and decoders
#   zyr_add_module(...)  a module with the isolation that the framework relies upon, see ZyrModule.cmake
#   Zyrmont_MODULE_DIR   where zyr_core.so and zyr_picture.so are installed
include(CMakeFindDependencyMacro)
find_dependency(Threads)
find_dependency(PkgConfig)
foreach(library lz4 xxhash systemd)
    pkg_check_modules(zyr_${library} QUIET IMPORTED_TARGET lib${library})
    if(NOT zyr_${library}_FOUND)
        set(Zyrmont_FOUND FALSE)
        set(Zyrmont_NOT_FOUND_MESSAGE "lib${library} is not installed (Debian package lib${library}-dev)")
        return()
    endif()
endforeach()
pkg_check_modules(zyr_miniz QUIET IMPORTED_TARGET miniz)
if(NOT TARGET ZYR::pam)
    find_library(Zyrmont_PAM_LIBRARY pam REQUIRED)
    add_library(ZYR::pam UNKNOWN IMPORTED)
    set_target_properties(ZYR::pam PROPERTIES IMPORTED_LOCATION "${Zyrmont_PAM_LIBRARY}")
endif()
include("${CMAKE_CURRENT_LIST_DIR}/ZyrmontTargets.cmake")
include("${CMAKE_CURRENT_LIST_DIR}/ZyrModule.cmake")
get_filename_component(Zyrmont_MODULE_DIR "${CMAKE_CURRENT_LIST_DIR}/../../zyrmont" ABSOLUTE)
