#pragma once

#include <cstdint>
#include <string_view>

namespace desktop {

/// What a request carries as "CmdHash": h = h * 31 + byte over unsigned bytes, modulo 2^32.
constexpr std::uint32_t commandHash(std::string_view name)
{
    std::uint32_t hash = 0;
    for (const char byte : name) {
        hash = hash * 31U + static_cast<unsigned char>(byte);
    }
    return hash;
}

/// Whether the plugin has a command @p name.
bool isCommandName(std::string_view name);

} // namespace desktop
