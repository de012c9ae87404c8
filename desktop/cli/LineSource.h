#pragma once

#include <functional>
#include <optional>
#include <string>

namespace desktop {

/// What else is read while there is no line.
struct OtherInput {
    int fd = -1;                  ///< none
    std::function<bool()> handle; ///< called when the descriptor is readable; false ends the reading of lines
};

/// Where lines come from.
class LineSource {
public:
    virtual ~LineSource() = default;

    /// The next line without its line end; nothing at the end, also when an interrupt is pending.
    virtual std::optional<std::string> next() = 0;
};

} // namespace desktop
