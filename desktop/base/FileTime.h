#pragma once

#include <cstdint>

namespace desktop {

/// A file's time, in either of the kernel's forms, as nanoseconds.
template <typename Time>
std::int64_t nanoseconds(const Time& time)
{
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

} // namespace desktop
