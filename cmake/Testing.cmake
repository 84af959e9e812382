# web2pdf_add_tests(NAME LIBRARIES lib... SOURCES file...)
# One GoogleTest executable; every test case becomes a ctest entry of its own, so that they run in parallel.

find_package(GTest REQUIRED)
include(GoogleTest)

# Seconds for one test case. The largest needs 14 seconds of a processor with the thread sanitizer, which may take
# minutes where it is shared with much else.
set(WEB2PDF_TEST_TIME_LIMIT 120)
if(WEB2PDF_SANITIZE)
    set(WEB2PDF_TEST_TIME_LIMIT 600)
endif()

function(web2pdf_add_tests name)
    cmake_parse_arguments(ARG "" "" "LIBRARIES;SOURCES;LABELS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE web2pdf_options ${ARG_LIBRARIES} GTest::gmock GTest::gtest_main)
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 120 PROPERTIES
        TIMEOUT ${WEB2PDF_TEST_TIME_LIMIT} LABELS "${ARG_LABELS}")
endfunction()
