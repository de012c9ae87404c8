#include "desktop/text/HumanSize.h"

#include <array>
#include <cstdio>

namespace desktop {

std::string humanSize(std::uint64_t bytes)
{
    constexpr std::array kUnits = {"B", "KB", "MB", "GB", "TB", "PB", "EB"};
    double value = static_cast<double>(bytes);
    std::size_t unit = 0;
    while (value >= 1023.95 && unit + 1 < kUnits.size()) { // what would be written as 1024.0
        value /= 1024.0;
        ++unit;
    }
    std::array<char, 32> text = {};
    std::snprintf(text.data(), text.size(), unit == 0 ? "%.0f %s" : "%.1f %s", value, kUnits[unit]);
    return text.data();
}

} // namespace desktop
