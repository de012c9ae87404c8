# One interface target carries the flags of every target of ours; presets add what a build is for (sanitizers, coverage).

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_library(compile_settings INTERFACE)
target_include_directories(compile_settings INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(compile_settings INTERFACE
    -Wall -Wextra -Wshadow -Wconversion -Wformat=2
    $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>
    $<$<BOOL:${STORAGEMEDIA_WERROR}>:-Werror>)
# A program loads only the libraries that it calls, whatever their descriptions list; docs/libraries.md shows them.
target_link_options(compile_settings INTERFACE -Wl,--as-needed)
# Sizes and counts beyond 4 GiB on 32-bit televisions. The C library's own functions for large files need both.
target_compile_definitions(compile_settings INTERFACE _FILE_OFFSET_BITS=64 _TIME_BITS=64 _GNU_SOURCE)
# tools/abi reads every record's layout from the release build's debug information; gcc leaves out those whose key function
# is elsewhere.
target_compile_options(compile_settings INTERFACE
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:RelWithDebInfo>>:-femit-class-debug-always>)

# What processes that play files from strangers' sticks are built with; HardeningTest looks at the results.
add_library(hardening INTERFACE)
target_compile_options(hardening INTERFACE
    -fstack-protector-strong
    $<$<NOT:$<BOOL:$<TARGET_PROPERTY:POSITION_INDEPENDENT_CODE>>>:-fPIE>)
target_link_options(hardening INTERFACE
    -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack
    $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>)
# The C library checks buffers in optimised code only; sanitizers do it better, and do not know its checking functions.
set(STORAGEMEDIA_FORTIFIED "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize=")
    set(STORAGEMEDIA_FORTIFIED 0)
endif()
target_compile_options(hardening INTERFACE
    $<${STORAGEMEDIA_FORTIFIED}:-U_FORTIFY_SOURCE> $<${STORAGEMEDIA_FORTIFIED}:-D_FORTIFY_SOURCE=2>)

# Marks object library `target` as code of a shared library, which exports only what it says.
function(set_as_library_code target)
    set_target_properties(${target} PROPERTIES
        POSITION_INDEPENDENT_CODE ON
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
endfunction()
