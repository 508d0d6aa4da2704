# What "cmake --install" puts where: the host looks for its modules in ../lib/zyrmont/, and for plug-ins in plugins/ there.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# The place of an FFmpeg that travels along is said from where each file stands, already when it is linked: the number of
# the build then does not depend on where the build found it.
if(ZYR_PACKAGE_PATHS)
    foreach(target zyr-host zyr_core_module zyr_picture_module zyr_blocks zyr_ffmpeg)
        set_target_properties(${target} PROPERTIES BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH_USE_LINK_PATH OFF)
    endforeach()
    if(ZYR_FFMPEG_PREFIX)
        set_target_properties(zyr-host PROPERTIES INSTALL_RPATH "$ORIGIN/../lib/zyrmont/ffmpeg")
        set_target_properties(zyr_picture_module PROPERTIES INSTALL_RPATH "$ORIGIN/ffmpeg")
        set_target_properties(zyr_ffmpeg PROPERTIES INSTALL_RPATH "$ORIGIN/../ffmpeg")
    endif()
endif()

install(TARGETS zyr-host RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS zyr_core_module zyr_picture_module LIBRARY DESTINATION lib/zyrmont)
install(TARGETS zyr_blocks zyr_ffmpeg LIBRARY DESTINATION lib/zyrmont/plugins)
# The decoder of blocks for pages.
install(FILES "${PROJECT_SOURCE_DIR}/src/plugin_blocks/js/zyr_blocks_decoder.js" DESTINATION share/zyrmont/js)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs/man/" DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 FILES_MATCHING PATTERN "*.1")

# For modules and hosts that are built outside of this tree: find_package(Zyrmont), see examples/.
set(packageDir lib/cmake/Zyrmont)
set(exported zyr_options zyr_common zyr_picture_model zyr_dep_lz4 zyr_dep_xxhash zyr_dep_systemd)
if(TARGET zyr_miniz)
    list(APPEND exported zyr_miniz)
    set_target_properties(zyr_miniz PROPERTIES EXPORT_NAME miniz)
endif()
set_target_properties(zyr_common PROPERTIES EXPORT_NAME common)
set_target_properties(zyr_picture_model PROPERTIES EXPORT_NAME picture)
install(TARGETS ${exported} EXPORT ZyrmontTargets
    ARCHIVE DESTINATION lib
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zyrmont)
install(EXPORT ZyrmontTargets NAMESPACE Zyrmont:: DESTINATION ${packageDir})
configure_file("${CMAKE_CURRENT_LIST_DIR}/ZyrmontConfig.cmake" "${CMAKE_BINARY_DIR}/ZyrmontConfig.cmake" COPYONLY)
# The minor number counts: modules of another one are refused when they are loaded.
write_basic_package_version_file("${CMAKE_BINARY_DIR}/ZyrmontConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_BINARY_DIR}/ZyrmontConfig.cmake" "${CMAKE_BINARY_DIR}/ZyrmontConfigVersion.cmake"
    "${CMAKE_CURRENT_LIST_DIR}/ZyrModule.cmake" "${CMAKE_CURRENT_LIST_DIR}/module.map.in" DESTINATION ${packageDir})

# The same for those who build without CMake. Modules need more than this: the options in ZyrModule.cmake.
set(zyrPcMiniz " miniz")
set(zyrPcLibraries "")
if(TARGET zyr_miniz)
    set(zyrPcMiniz "")
    set(zyrPcLibraries " -lzyr_miniz")
endif()
configure_file("${CMAKE_CURRENT_LIST_DIR}/zyrmont.pc.in" "${CMAKE_BINARY_DIR}/zyrmont.pc" @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/zyrmont.pc" DESTINATION lib/pkgconfig)
