#include "desktop/cli/LineReader.h"

#include <poll.h>

#include <array>
#include <cerrno>

namespace desktop {

LineReader::LineReader(int fd, const Interrupts& interrupts, OtherInput other)
    : m_fd(fd)
    , m_interrupts(interrupts)
    , m_other(std::move(other))
{
}

std::optional<std::string> LineReader::next()
{
    std::size_t searched = 0;
    while (true) {
        const std::size_t end = m_buffer.find('\n', searched);
        if (end != std::string::npos) {
            std::string line = takeLine(end, 1);
            if (!std::exchange(m_skipping, false)) {
                return line;
            }
            searched = 0;
            continue;
        }
        if (m_buffer.size() > kLongestLine) {
            std::string line = takeLine(m_buffer.size(), 0);
            if (!std::exchange(m_skipping, true)) {
                return line;
            }
        }
        searched = m_buffer.size();
        if (!readMore()) {
            break;
        }
    }
    // A last line may lack its end.
    const bool whole = !m_buffer.empty() && !m_skipping && !m_interrupts.pending();
    return whole ? std::optional<std::string>(takeLine(m_buffer.size(), 0)) : std::nullopt;
}

bool LineReader::readMore()
{
    std::array<pollfd, 3> waits = {{{m_fd, POLLIN, 0}, {m_interrupts.fd(), POLLIN, 0}, {m_other.fd, POLLIN, 0}}};
    std::array<char, 65536> bytes;
    while (true) {
        poll(waits.data(), waits.size(), -1);
        if (waits[1].revents != 0) {
            return false;
        }
        if (waits[2].revents != 0 && !m_other.handle()) {
            return false;
        }
        if (waits[0].revents == 0) {
            continue;
        }
        const ssize_t got = read(m_fd, bytes.data(), bytes.size());
        if (got > 0) {
            m_buffer.append(bytes.data(), static_cast<std::size_t>(got));
        }
        if (got >= 0 || (errno != EINTR && errno != EAGAIN)) {
            return got > 0;
        }
    }
}

std::string LineReader::takeLine(std::size_t length, std::size_t lineEnd)
{
    std::string line = m_buffer.substr(0, length);
    m_buffer.erase(0, length + lineEnd);
    return line;
}

} // namespace desktop
