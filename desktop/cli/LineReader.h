#pragma once

#include "desktop/cli/Interrupts.h"

#include <functional>
#include <optional>
#include <string>

namespace desktop {

/// What else is read while there is no line.
struct OtherInput {
    int fd = -1;                  ///< none
    std::function<bool()> handle; ///< called when the descriptor is readable; false ends the reading of lines
};

/// Reads lines from a descriptor until its end or an interrupt.
class LineReader {
public:
    /// Longer lines are cut off here, so that a stream without line ends cannot fill the memory.
    static constexpr std::size_t kLongestLine = 16U << 20; // bytes

    LineReader(int fd, const Interrupts& interrupts, OtherInput other = {});

    /// The next line without its line end; nothing at the end, also when an interrupt is pending.
    std::optional<std::string> next();

private:
    bool readMore();
    std::string takeLine(std::size_t length, std::size_t lineEnd);

    int m_fd;
    const Interrupts& m_interrupts;
    const OtherInput m_other;
    std::string m_buffer;
    bool m_skipping = false; ///< the rest of a line that was cut off
};

} // namespace desktop
