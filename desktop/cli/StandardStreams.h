#pragma once

#include "desktop/cli/TerminalPump.h"

#include <optional>
#include <string>

namespace desktop {

/// Opens those of the three standard descriptors that the program was started without, so that nothing else takes their
/// numbers: standard output so that writing to it fails, as it would without one. Called first of all.
void openMissingStreams();

/// A copy of standard output. Throws std::system_error when there is none to be had.
UniqueFd copyOfStandardOutput();

/// Where the log goes that plugin and desktop print on standard output, which the program needs for itself. It goes as it
/// is, except to a terminal, for which it is made safe.
class LogOutput {
public:
    enum class Target { Errors, Nowhere };

    /// Sends the log to @p file, which is appended to; or to @p target when that is empty. Throws std::system_error when the
    /// file cannot be opened.
    LogOutput(std::string file, Target target);
    /// Writes what is left, and sends what may still come nowhere.
    ~LogOutput();
    LogOutput(const LogOutput&) = delete;
    LogOutput& operator=(const LogOutput&) = delete;

    /// Begins to show the log on a terminal; until then some of it is kept. Called once the program may have threads.
    void start();
    /// Lets @p show write what goes to a terminal; null: it is written as it comes. See TerminalPump::setShow().
    void showOnTerminal(std::function<void(const std::string& text)> show);
    /// Writes what is left. Returns what is wrong with the log file: its name and the reason; empty when nothing is.
    std::string finish();

private:
    const std::string m_file;
    std::optional<TerminalPump> m_pump; ///< of a terminal
};

} // namespace desktop
