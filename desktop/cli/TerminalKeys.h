#pragma once

#include "desktop/cli/KeyReader.h"

#include "desktop/base/Wakeup.h"

#include <string>
#include <vector>

namespace desktop {

/// The keys that a person types on the terminal that standard input is, one by one and without echo. Nothing is read while
/// standard input is none, or another program has the terminal. There is one object at a time, used on one thread.
class TerminalKeys {
public:
    TerminalKeys();
    /// Restores the terminal.
    ~TerminalKeys();
    TerminalKeys(const TerminalKeys&) = delete;
    TerminalKeys& operator=(const TerminalKeys&) = delete;

    /// For poll(2): readable when keys have been typed; negative while none are read.
    int fd() const;
    /// Whether the terminal is another program's, which takeTerminal() is to find out about now and then: a shell that gives
    /// it to a running program says nothing.
    bool isWithoutTerminal() const;
    /// Reads keys from now on if the terminal is this program's.
    void takeTerminal() { begin(); }
    /// The keys typed so far, as KeyReader names them. Waits for nothing once fd() is readable.
    std::vector<std::string> take();

    /// For poll(2): readable when the program is to stop (Ctrl-Z) or goes on afterwards.
    int signalFd() const;
    /// Whether the program is to stop.
    bool isToStop();
    /// Restores the terminal and stops the program; returns when it goes on.
    void stop();

    /// Restores the terminal, if keys are read from it, for a program that ends at once. Safe on any thread.
    static void restore();

private:
    void begin();

    KeyReader m_reader;
};

} // namespace desktop
