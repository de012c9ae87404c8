#pragma once

#include <cstdint>
#include <string>

namespace desktop {

/// @p bytes for people, in binary units: "17 B", "1.5 KB", "2.0 GB".
std::string humanSize(std::uint64_t bytes);

} // namespace desktop
