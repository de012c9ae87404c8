#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace desktop {

struct CommandName {
    const char* name;    ///< protocol spelling
    const char* purpose; ///< one line for people
};

/// Every command that the plugin takes, in the protocol's order.
constexpr std::size_t kCommandNameCount = 46;
extern const std::array<CommandName, kCommandNameCount> kCommandNames;

/// What a request carries as "CmdHash": h = h * 31 + byte over unsigned bytes, modulo 2^32.
constexpr std::uint32_t commandHash(std::string_view name)
{
    std::uint32_t hash = 0;
    for (const char byte : name) {
        hash = hash * 31U + static_cast<unsigned char>(byte);
    }
    return hash;
}

/// Whether @p name is in the table.
bool isCommandName(std::string_view name);

} // namespace desktop
