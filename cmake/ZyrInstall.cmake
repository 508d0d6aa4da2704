# What "cmake --install" puts where: the host looks for its modules in ../lib/zyrmont/, and for plug-ins in plugins/ there.
include(GNUInstallDirs)
if(TARGET zyr-host)
    install(TARGETS zyr-host RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
install(TARGETS zyr_core_module zyr_picture_module LIBRARY DESTINATION lib/zyrmont)
install(TARGETS zyr_ffmpeg LIBRARY DESTINATION lib/zyrmont/plugins)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs/man/" DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 FILES_MATCHING PATTERN "*.1")
