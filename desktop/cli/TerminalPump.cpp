#include "desktop/cli/TerminalPump.h"

#include "desktop/cli/TextColumns.h"

#include <fcntl.h>
#include <poll.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace desktop {

namespace {

// How much of the end of @p text may be the beginning of something: of a character, or of the line end "\r\n".
std::size_t unfinishedLength(std::string_view text)
{
    if (!text.empty() && text.back() == '\r') {
        return 1;
    }
    constexpr std::size_t kLongestBeginning = 3; // bytes of a character of four
    for (std::size_t length = 1; length <= std::min(kLongestBeginning, text.size()); ++length) {
        const auto byte = static_cast<unsigned char>(text[text.size() - length]);
        const std::size_t wanted = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
        if (wanted > length) {
            return length;
        }
        if ((byte & 0xC0) != 0x80) {
            return 0;
        }
    }
    return 0;
}

// Lines whose ends are "\n" or "\r\n".
std::string visibleLines(std::string_view text)
{
    std::string out;
    while (!text.empty()) {
        const std::size_t special = text.find_first_of("\t\n");
        if (special == std::string_view::npos) {
            return out + visibleText(text);
        }
        const bool hasReturn = text[special] == '\n' && special > 0 && text[special - 1] == '\r';
        out += visibleText(text.substr(0, special - (hasReturn ? 1 : 0)));
        out += hasReturn ? "\r\n" : std::string(1, text[special]);
        text.remove_prefix(special + 1);
    }
    return out;
}

} // namespace

std::string TerminalText::add(std::string_view bytes)
{
    m_waiting += bytes;
    const std::size_t ready = m_waiting.size() - unfinishedLength(m_waiting);
    std::string text = visibleLines(std::string_view(m_waiting).substr(0, ready));
    m_waiting.erase(0, ready);
    return text;
}

std::string TerminalText::finish()
{
    return visibleLines(std::exchange(m_waiting, {}));
}

TerminalPump::TerminalPump(UniqueFd terminal)
    : m_terminal(std::move(terminal))
{
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "log");
    }
    m_outlet = UniqueFd(ends[0]);
    m_inlet = UniqueFd(ends[1]);
    fcntl(m_outlet.get(), F_SETFL, O_NONBLOCK);
}

TerminalPump::~TerminalPump()
{
    m_stop.raise();
    if (m_thread.joinable()) {
        m_thread.join();
    }
    while (copySome()) {
    }
    show(m_text.finish());
}

void TerminalPump::start()
{
    m_thread = std::thread(&TerminalPump::copyUntilStopped, this);
}

void TerminalPump::copyUntilStopped()
{
    std::array<pollfd, 2> waits = {{{m_outlet.get(), POLLIN, 0}, {m_stop.fd(), POLLIN, 0}}};
    while (waits[1].revents == 0) {
        poll(waits.data(), waits.size(), -1);
        copySome();
    }
}

// False when there is nothing to copy.
bool TerminalPump::copySome()
{
    std::array<char, 65536> bytes;
    const ssize_t got = read(m_outlet.get(), bytes.data(), bytes.size());
    if (got <= 0) {
        return got < 0 && errno == EINTR;
    }
    show(m_text.add({bytes.data(), static_cast<std::size_t>(got)}));
    return true;
}

void TerminalPump::setShow(std::function<void(const std::string& text)> show)
{
    const LockGuard lock(m_mutex);
    m_show = std::move(show);
}

void TerminalPump::show(const std::string& text)
{
    const LockGuard lock(m_mutex);
    if (m_show) {
        m_show(text);
    } else {
        write(text);
    }
}

void TerminalPump::write(const std::string& text) const
{
    for (std::string_view rest = text; !rest.empty();) {
        const ssize_t written = ::write(m_terminal.get(), rest.data(), rest.size());
        if (written < 0 && errno == EAGAIN) { // a terminal that somebody else has made so
            pollfd wait = {m_terminal.get(), POLLOUT, 0};
            poll(&wait, 1, -1);
        } else if (written < 0 && errno != EINTR) {
            return;
        }
        rest.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
}

} // namespace desktop
