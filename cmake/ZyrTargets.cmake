# Helpers that keep the folder lists short.

# Groups of neighbours that are compiled as one: file-local names have to differ within a folder, not beyond it.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS cmake/compiled-alone.txt)
file(STRINGS cmake/compiled-alone.txt ZYR_COMPILED_ALONE REGEX "^src/")
list(TRANSFORM ZYR_COMPILED_ALONE PREPEND "${PROJECT_SOURCE_DIR}/")
function(zyr_group_sources target)
    list(REMOVE_ITEM ARGN ${ZYR_COMPILED_ALONE})
    foreach(source ${ARGN})
        cmake_path(GET source PARENT_PATH folder)
        cmake_path(RELATIVE_PATH folder BASE_DIRECTORY "${PROJECT_SOURCE_DIR}")
        string(MAKE_C_IDENTIFIER "${folder}" folder)
        math(EXPR group "0${count_${folder}} / ${ZYR_UNITY_SIZE}")
        math(EXPR count_${folder} "0${count_${folder}} + 1")
        set_source_files_properties(${source} TARGET_DIRECTORY ${target} PROPERTIES UNITY_GROUP "${folder}_${group}")
    endforeach()
    set_target_properties(${target} PROPERTIES UNITY_BUILD_MODE GROUP)
endfunction()

# zyr_sources(target SOURCES a.cpp... HEADERS a.h...)
# Headers join the target's header set, which is what the package installs.
function(zyr_sources target)
    cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS" ${ARGN})
    if(ARG_SOURCES)
        list(TRANSFORM ARG_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
        target_sources(${target} PRIVATE ${ARG_SOURCES})
        if(ZYR_UNITY)
            zyr_group_sources(${target} ${ARG_SOURCES})
        endif()
    endif()
    if(ARG_HEADERS)
        list(TRANSFORM ARG_HEADERS PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
        target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}/src" FILES ${ARG_HEADERS})
    endif()
endfunction()

# The modules and the host: what a run needs, without tests and benchmarks.
add_custom_target(zyr_programs)
# What the thread sanitizer's build makes: the threaded tests, and all that tests load.
add_custom_target(zyr_threaded_tests)
add_dependencies(zyr_threaded_tests zyr_programs)

include(ZyrModule)

# What is compiled for tests only is not optimized: compiling a test costs far more than running it.
function(zyr_compile_for_tests target)
    target_compile_options(${target} PRIVATE -O0)
    if(ZYR_SANITIZE MATCHES undefined)
        # A third of the compiler's work goes into these; a null pointer ends the test without them, too.
        target_compile_options(${target} PRIVATE -fno-sanitize=null,vptr)
    endif()
endfunction()

# Lets a program's sources begin with the precompiled tests/support/zyr_test_prefix.h. They include what they use all the
# same: the lint compiles them without it. The compiler's cache needs -fpch-preprocess.
function(zyr_use_test_prefix target)
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-fpch-preprocess>)
        target_precompile_headers(${target} REUSE_FROM zyr_test_prefix)
    endif()
endfunction()

# The tests of a program in as many processes as it has sources; each runs every n-th of them. The sum over all tests is
# made by scripts/count_tests.py.
function(zyr_add_shards name)
    list(LENGTH ARGN count)
    math(EXPR last "${count} - 1")
    foreach(index RANGE ${last})
        add_test(NAME ${name}.${index} COMMAND ${name})
        set_tests_properties(${name}.${index} PROPERTIES ${properties}
            ENVIRONMENT "GTEST_TOTAL_SHARDS=${count};GTEST_SHARD_INDEX=${index}")
    endforeach()
endfunction()

# zyr_add_test(name [THREADED] [OPTIMIZED] [LOCK what] SOURCES ... LIBRARIES ...): one GoogleTest program for one folder.
# LOCK: tests of programs with the same word don't run side by side, since they would see each other.
# THREADED: its tests run threads side by side; they carry the label "threaded" and run under the thread sanitizer too.
# OPTIMIZED: the tests themselves calculate so much that they are compiled as the library is. They miss the prefix header.
function(zyr_add_test name)
    cmake_parse_arguments(ARG "THREADED;OPTIMIZED" "LOCK" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    if(NOT ARG_OPTIMIZED)
        zyr_compile_for_tests(${name})
        zyr_use_test_prefix(${name})
    endif()
    set(label "plain")
    if(ARG_THREADED)
        set(label "threaded")
        add_dependencies(zyr_threaded_tests ${name})
    endif()
    target_compile_definitions(${name} PRIVATE ZYR_MODULE_WORD="test")
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} zyr_options GTest::gmock GTest::gtest_main)
    # Seconds for one process. Sanitizers, emulation and counting are slower by far.
    set(limit 120)
    if(ZYR_SANITIZE OR ZYR_COVERAGE OR CMAKE_CROSSCOMPILING)
        set(limit 300)
    endif()
    if(ZYR_TESTS_TOGETHER)
        set(limit 1200)
    endif()
    set(properties TIMEOUT ${limit} LABELS ${label})
    if(ARG_LOCK)
        list(APPEND properties RESOURCE_LOCK ${ARG_LOCK})
    endif()
    if(ZYR_TESTS_TOGETHER)
        zyr_add_shards(${name} ${ARG_SOURCES})
        return()
    endif()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 PROPERTIES ${properties})
endfunction()
