# Builds a module of the framework. Used by this tree and, through find_package(Zyrmont), by modules outside of it.
set(zyrModuleMapTemplate "${CMAKE_CURRENT_LIST_DIR}/module.map.in")

# zyr_add_module(target WORD <module word> OUTPUT <file name without .so> EXPORTS <plain names>... LIBRARIES <targets>...)
# A module exports its plain entry points and the zyr_ functions of namespace zyr, and binds all else inside itself. The
# module word stands in its lines of the log.
function(zyr_add_module target)
    cmake_parse_arguments(ARG "" "WORD;OUTPUT" "EXPORTS;LIBRARIES" ${ARGN})
    add_library(${target} MODULE)
    # For the test that looks at every module.
    set_property(GLOBAL APPEND PROPERTY ZYR_MODULES ${target})
    set_target_properties(${target} PROPERTIES ZYR_EXPORTS "${ARG_EXPORTS}")
    list(JOIN ARG_EXPORTS ";\n    " exports)
    set(map "${CMAKE_CURRENT_BINARY_DIR}/${target}.map")
    configure_file("${zyrModuleMapTemplate}" "${map}" @ONLY)
    set_target_properties(${target} PROPERTIES PREFIX "" OUTPUT_NAME "${ARG_OUTPUT}" LINK_DEPENDS "${map}")
    target_compile_definitions(${target} PRIVATE ZYR_MODULE_WORD="${ARG_WORD}")
    set(common zyr_common)
    if(NOT TARGET zyr_common)
        set(common Zyrmont::common)
    endif()
    # The whole common library, so that every module offers all of its functions. It stands behind those that need it:
    # otherwise it is repeated, and its functions are defined twice.
    set_target_properties(${target} PROPERTIES LINK_LIBRARY_OVERRIDE_${common} WHOLE_ARCHIVE)
    target_link_libraries(${target} PRIVATE ${ARG_LIBRARIES} ${common})
    target_link_options(${target} PRIVATE
        -Wl,-soname,${ARG_OUTPUT}.so -Wl,-Bsymbolic "-Wl,--version-script=${map}")
    # The sanitizer runtimes are resolved from the program, so undefined symbols are only refused without them.
    if(NOT ZYR_SANITIZE)
        target_link_options(${target} PRIVATE -Wl,-z,defs)
    endif()
endfunction()

# zyr_add_plugin(target WORD <module word> OUTPUT <file name without .so> LIBRARIES <targets>...): a module with the
# twelve entry points of a plug-in, which ZYR_PLUGIN_EXPORTS defines.
function(zyr_add_plugin target)
    zyr_add_module(${target} ${ARGN} EXPORTS zyr_plugin_getName zyr_plugin_getVersion zyr_plugin_getLongName
        zyr_plugin_getGUID zyr_plugin_getDescription zyr_plugin_getNamespace
        zyr_plugin_getDependenciesComponentModules zyr_plugin_getDependenciesPluginModules zyr_plugin_initialize
        zyr_plugin_deinitialize zyr_plugin_isExtensionSupported zyr_plugin_getProcAddress)
endfunction()
