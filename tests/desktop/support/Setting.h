#pragma once

#include <cstdlib>

namespace testsupport {

/// The whole number in environment variable @p name, or @p otherwise.
inline unsigned int setting(const char* name, unsigned int otherwise)
{
    const char* const value = std::getenv(name);
    return value == nullptr ? otherwise : static_cast<unsigned int>(std::strtoul(value, nullptr, 10));
}

} // namespace testsupport
