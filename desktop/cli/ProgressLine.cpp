#include "desktop/cli/ProgressLine.h"

#include "desktop/cli/TextColumns.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace desktop {

namespace {

std::size_t terminalColumns()
{
    winsize size = {};
    constexpr std::size_t kUsual = 80;
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsual;
}

// Whether standard error is a terminal on which a line can be written anew.
bool isTerminalWithCursor()
{
    const char* const kind = std::getenv("TERM");
    return isatty(STDERR_FILENO) == 1 && (kind == nullptr || std::strcmp(kind, "dumb") != 0);
}

// The terminal is another program's now.
bool isInBackground()
{
    const pid_t foreground = tcgetpgrp(STDERR_FILENO);
    return foreground > 0 && foreground != getpgrp();
}

} // namespace

ProgressLine::ProgressLine()
    : m_terminal(isTerminalWithCursor())
{
}

void ProgressLine::show(const std::string& text)
{
    if (!m_terminal || isInBackground()) {
        return;
    }
    const LockGuard lock(m_mutex);
    std::fprintf(stderr, "\r\x1b[K%s", truncated(text, terminalColumns() - 1).c_str());
    m_shown = true;
}

void ProgressLine::showAbove(const std::string& text)
{
    if (m_terminal) {
        clear();
        std::fprintf(stderr, "%s\n", text.c_str());
    }
}

void ProgressLine::clear()
{
    const LockGuard lock(m_mutex);
    if (m_shown) {
        std::fputs("\r\x1b[K", stderr);
        m_shown = false;
    }
}

std::string progressBar(std::size_t done, std::size_t total)
{
    constexpr std::size_t kColumns = 30;
    const std::size_t filled = total > 0 ? std::min(done, total) * kColumns / total : kColumns;
    return "[" + std::string(filled, '#') + std::string(kColumns - filled, ' ') + "] " + std::to_string(done) + " of " +
           std::to_string(total);
}

} // namespace desktop
