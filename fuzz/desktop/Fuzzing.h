#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

/// Ends the process, which is what a fuzzer takes for a finding, unless @p holds.
inline void expect(bool holds, const char* rule)
{
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", rule);
        std::abort();
    }
}

/// What the fuzzer makes up, as bytes.
inline std::string inputOf(const std::uint8_t* data, std::size_t size)
{
    return size > 0 ? std::string(reinterpret_cast<const char*>(data), size) : std::string();
}
