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
# Sizes and counts beyond 4 GiB on 32-bit televisions. The C library's own functions for large files need both.
target_compile_definitions(compile_settings INTERFACE _FILE_OFFSET_BITS=64 _TIME_BITS=64 _GNU_SOURCE)
