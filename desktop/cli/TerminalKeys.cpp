#include "desktop/cli/TerminalKeys.h"

#include <termios.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

namespace desktop {

namespace {

// What signal handlers and the end of the program look at.
std::atomic<bool> s_isRaw = false;
termios s_usual = {};
std::atomic<bool> s_isToStop = false; // the handler runs on any thread
Wakeup* s_signalled = nullptr;

void noteSignal(int signal)
{
    const int error = errno;
    s_isToStop = signal == SIGTSTP;
    s_signalled->raise();
    errno = error;
}

// Whoever waits is woken by the descriptor, whatever thread the signal comes to.
void setHandler(int signal, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
}

} // namespace

TerminalKeys::TerminalKeys()
{
    static Wakeup s_wakeup;
    s_signalled = &s_wakeup;
    setHandler(SIGTSTP, &noteSignal);
    setHandler(SIGCONT, &noteSignal);
    begin();
}

TerminalKeys::~TerminalKeys()
{
    setHandler(SIGTSTP, SIG_DFL);
    setHandler(SIGCONT, SIG_DFL);
    restore();
}

int TerminalKeys::fd() const
{
    return s_isRaw ? STDIN_FILENO : -1;
}

bool TerminalKeys::isWithoutTerminal() const
{
    return !s_isRaw && tcgetpgrp(STDIN_FILENO) > 0;
}

std::vector<std::string> TerminalKeys::take()
{
    std::array<char, 256> bytes = {};
    const ssize_t got = read(STDIN_FILENO, bytes.data(), bytes.size());
    if (got <= 0) { // the terminal has gone
        restore();
        return {};
    }
    return m_reader.add({bytes.data(), static_cast<std::size_t>(got)});
}

int TerminalKeys::signalFd() const
{
    return s_signalled->fd();
}

// Going on after another program has had the terminal begins anew.
bool TerminalKeys::isToStop()
{
    s_signalled->clear();
    const bool stops = s_isToStop.exchange(false);
    if (!stops) {
        begin();
    }
    return stops;
}

void TerminalKeys::stop()
{
    restore();
    setHandler(SIGTSTP, SIG_DFL);
    raise(SIGTSTP);
    setHandler(SIGTSTP, &noteSignal);
    begin();
}

void TerminalKeys::restore()
{
    if (s_isRaw.exchange(false)) {
        tcsetattr(STDIN_FILENO, TCSADRAIN, &s_usual);
    }
}

// A program in the background would be stopped for touching the terminal.
void TerminalKeys::begin()
{
    if (s_isRaw || tcgetpgrp(STDIN_FILENO) != getpgrp() || tcgetattr(STDIN_FILENO, &s_usual) != 0) {
        return;
    }
    termios raw = s_usual;
    raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    raw.c_cc[VMIN] = 1;
    raw.c_cc[VTIME] = 0;
    s_isRaw = true;
    tcsetattr(STDIN_FILENO, TCSADRAIN, &raw);
}

} // namespace desktop
