# Puts the files of new projects (new_plugin/<folder>/<path>.in) into the program, as texts of one source.
set(zyrTemplateEntries "")
foreach(folder common codec objects)
    file(GLOB_RECURSE files CONFIGURE_DEPENDS LIST_DIRECTORIES false
        RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}/new_plugin/${folder}" "${CMAKE_CURRENT_SOURCE_DIR}/new_plugin/${folder}/*.in")
    foreach(file IN LISTS files)
        set(source "${CMAKE_CURRENT_SOURCE_DIR}/new_plugin/${folder}/${file}")
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${source}")
        file(READ "${source}" text)
        string(REGEX REPLACE "\\.in$" "" path "${file}")
        string(APPEND zyrTemplateEntries "        {\"${folder}\", \"${path}\", R\"zyr(${text})zyr\"},\n")
    endforeach()
endforeach()
configure_file("${CMAKE_CURRENT_SOURCE_DIR}/new_plugin/zyr_plugin_templates.cpp.in"
    "${CMAKE_CURRENT_BINARY_DIR}/zyr_plugin_templates.cpp" @ONLY)
target_sources(zyr_host_parts PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/zyr_plugin_templates.cpp")
