#pragma once

#include <string>

namespace desktop {

/// What is logged: lines of this level and above. The numbers are those of the platform's log.
enum class LogLevel { Debug = 0, Info = 1, Warning = 2, Error = 3, Off = 4 };

/// Sets the level that SocMwLogLevelGet returns from now on; LogLevel::Warning at first. Safe on any thread.
void setLogLevel(LogLevel level);

/// Logs @p text as the desktop's own line, on standard output like every line. Safe on any thread.
void logLine(LogLevel level, const std::string& text);

} // namespace desktop
