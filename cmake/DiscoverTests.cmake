# How ctest gets to know the tests of a GoogleTest program: each by its name; under a sanitizer, where starting the program takes
# longer than most of its tests, each suite.

include(GoogleTest)
set(STORAGEMEDIA_LIST_SUITES ${CMAKE_CURRENT_LIST_DIR}/ListSuites.cmake)

# discover_tests(PROGRAM [properties of each test, in pairs])
function(discover_tests program)
    if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize=(address|thread)")
        gtest_discover_tests(${program} DISCOVERY_TIMEOUT 60 NO_PRETTY_VALUES PROPERTIES ${ARGN})
        return()
    endif()
    set(suites ${CMAKE_CURRENT_BINARY_DIR}/${program}_suites.cmake)
    add_custom_command(TARGET ${program} POST_BUILD
        COMMAND ${CMAKE_COMMAND} -D "PROGRAM=$<TARGET_FILE:${program}>" -D "PROPERTIES=${ARGN}" -D "OUTPUT=${suites}"
                -P ${STORAGEMEDIA_LIST_SUITES}
        VERBATIM)
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${suites})
endfunction()
