# Writes OUTPUT, which tells ctest the suites of PROGRAM, each with PROPERTIES.

execute_process(COMMAND ${PROGRAM} --gtest_list_tests OUTPUT_VARIABLE tests COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "(^|\n)[A-Za-z0-9_/]+\\." suites "${tests}")
set(lines "")
foreach(suite IN LISTS suites)
    string(REGEX REPLACE "[\n.]" "" suite ${suite})
    string(APPEND lines
        "add_test([=[${suite}]=] ${PROGRAM} [=[--gtest_filter=${suite}.*]=])\n"
        "set_tests_properties([=[${suite}]=] PROPERTIES TIMEOUT 600 ${PROPERTIES})\n")
endforeach()
file(WRITE ${OUTPUT} "${lines}")
