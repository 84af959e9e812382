# web2pdf_add_tests(NAME LIBRARIES lib... SOURCES file... [LABELS label...])
# One GoogleTest program. Each of its test suites becomes a ctest entry, NAME.Suite, found when the program is
# built: they run in parallel, and a suite that crashes takes no other with it.

find_package(GTest REQUIRED)

# Seconds for one test suite. Those with the engine take tens of seconds, and several times that with a sanitizer
# on a processor that is shared with much else.
set(WEB2PDF_TEST_TIME_LIMIT 300)
if(WEB2PDF_SANITIZE)
    set(WEB2PDF_TEST_TIME_LIMIT 1200)
endif()

function(web2pdf_add_tests name)
    cmake_parse_arguments(ARG "" "" "LIBRARIES;SOURCES;LABELS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE web2pdf_options ${ARG_LIBRARIES} GTest::gmock GTest::gtest_main)

    # A third of the time that a test takes to compile goes into these two headers: all share the first one's.
    get_property(precompiled GLOBAL PROPERTY WEB2PDF_PRECOMPILED_FOR_TESTS)
    if(precompiled)
        target_precompile_headers(${name} REUSE_FROM ${precompiled})
    else()
        target_precompile_headers(${name} PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
        set_property(GLOBAL PROPERTY WEB2PDF_PRECOMPILED_FOR_TESTS ${name})
    endif()

    set(suites ${CMAKE_CURRENT_BINARY_DIR}/${name}-suites.cmake)
    add_custom_command(TARGET ${name} POST_BUILD
        COMMAND ${CMAKE_COMMAND} -D PROGRAM=$<TARGET_FILE:${name}> -D NAME=${name} -D OUTPUT=${suites}
            -D TIME_LIMIT=${WEB2PDF_TEST_TIME_LIMIT} -D "LABELS=${ARG_LABELS}"
            -P ${PROJECT_SOURCE_DIR}/cmake/ListTestSuites.cmake
        BYPRODUCTS ${suites}
        VERBATIM)
    # A program that is not built must not be overlooked: its entry fails.
    set(entries ${CMAKE_CURRENT_BINARY_DIR}/${name}-entries.cmake)
    file(WRITE ${entries}
        "if(EXISTS [==[${suites}]==])\n    include([==[${suites}]==])\n"
        "else()\n    add_test(${name}.IsNotBuilt ${name}.IsNotBuilt)\nendif()\n")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${entries})
endfunction()

# web2pdf_add_python_tests(NAME tests [COST seconds] [LABELS label...])
# Tests of the Python module or class named, in the current folder, with the helpers in Tests/Support and the
# finished programs. The ones that cost most are started first, so that all processors are busy to the end.
function(web2pdf_add_python_tests name tests)
    cmake_parse_arguments(ARG "" "COST" "LABELS" ${ARGN})
    add_test(NAME ${name}
        COMMAND /usr/bin/python3 -B -m unittest ${tests}
        WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT
            "PYTHONPATH=${PROJECT_SOURCE_DIR}/Tests/Support;WEB2PDF_TOOL=$<TARGET_FILE:web2pdf>;WEBARCHIVE=$<TARGET_FILE:webarchive>;WEB2PDF_BATCH=$<TARGET_FILE:web2pdf-batch>"
        TIMEOUT 600
        COST ${ARG_COST}
        LABELS "${ARG_LABELS}")
endfunction()

# web2pdf_add_python_modules(PREFIX COST seconds ENGINE pattern)
# Every class of tests in a file test_*.py of the current folder as an entry PREFIX.module.Class, so that they run in
# parallel; each sees nothing of the others. A class is found by its name, which ends in "Tests" as no other's does.
# Modules whose names match the pattern start the engine.
function(web2pdf_add_python_modules prefix)
    cmake_parse_arguments(ARG "" "COST;ENGINE" "" ${ARGN})
    file(GLOB modules CONFIGURE_DEPENDS test_*.py)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${modules})
    foreach(file IN LISTS modules)
        get_filename_component(module ${file} NAME_WE)
        set(label "")
        if(module MATCHES "${ARG_ENGINE}")
            set(label engine)
        endif()
        file(STRINGS ${file} classes REGEX "^class [A-Za-z0-9]+Tests[(]")
        foreach(line IN LISTS classes)
            string(REGEX REPLACE "^class ([A-Za-z0-9]+).*" "\\1" class "${line}")
            web2pdf_add_python_tests(${prefix}.${module}.${class} ${module}.${class} COST ${ARG_COST} LABELS ${label})
        endforeach()
    endforeach()
endfunction()
