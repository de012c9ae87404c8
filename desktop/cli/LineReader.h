#pragma once

#include "desktop/cli/Interrupts.h"
#include "desktop/cli/LineSource.h"

namespace desktop {

/// Reads lines from a descriptor until its end or an interrupt.
class LineReader final : public LineSource {
public:
    /// Longer lines are cut off here, so that a stream without line ends cannot fill the memory.
    static constexpr std::size_t kLongestLine = 16U << 20; // bytes

    LineReader(int fd, const Interrupts& interrupts, OtherInput other = {});

    std::optional<std::string> next() override;

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
