# Asks PROGRAM for its tests and writes a ctest entry for each of its suites to OUTPUT. Run when NAME is built.

execute_process(COMMAND ${PROGRAM} --gtest_list_tests
    OUTPUT_VARIABLE listed RESULT_VARIABLE status TIMEOUT 120)
if(NOT status EQUAL 0)
    file(REMOVE ${OUTPUT} ${PROGRAM})
    message(FATAL_ERROR "${NAME} cannot list its tests: ${status}")
endif()
if(listed MATCHES "\n([^\n]*(-byte object <|0x[0-9a-f]+ pointing to )[^\n]*)")
    file(REMOVE ${OUTPUT} ${PROGRAM})
    message(FATAL_ERROR "${NAME} tells a case by bytes or addresses; give its parameter a PrintTo: ${CMAKE_MATCH_1}")
endif()

# A suite stands at the beginning of a line and ends in a dot; its cases are indented. Behind "#" stands what a
# case's parameter is.
string(REGEX REPLACE "  # [^\n]*" "" listed "\n${listed}")
string(REGEX MATCHALL "\n[A-Za-z0-9_/]+\\.(\n  [A-Za-z0-9_/]+)+" suites "${listed}")
set(entries "")
foreach(suite IN LISTS suites)
    string(REGEX MATCHALL "\n  " cases "${suite}")
    list(LENGTH cases cost)
    string(REGEX MATCH "[A-Za-z0-9_/]+" suite "${suite}")
    # Where the engine is started, a case takes about a second; elsewhere next to nothing.
    if(NOT LABELS MATCHES engine)
        set(cost 0.0${cost})
    endif()
    string(APPEND entries
        "add_test([==[${NAME}.${suite}]==] [==[${PROGRAM}]==] [==[--gtest_filter=${suite}.*]==])\n"
        "set_tests_properties([==[${NAME}.${suite}]==] PROPERTIES"
        " TIMEOUT ${TIME_LIMIT} COST ${cost} LABELS [==[${LABELS}]==])\n")
endforeach()
if(NOT entries)
    message(FATAL_ERROR "${NAME} has no tests")
endif()
file(WRITE ${OUTPUT} "${entries}")
