#pragma once

#include <string>

namespace desktop {

/// What is logged: lines of this level and above. The numbers are those of the platform's log.
enum class LogLevel { Debug = 0, Info = 1, Warning = 2, Error = 3, Off = 4 };

/// The level of the program and its plugin; LogLevel::Warning at first. Both are safe on any thread.
LogLevel logLevel();
void setLogLevel(LogLevel level);

/// Logs @p text as the desktop's own line, on standard output like every line. Safe on any thread.
void logLine(LogLevel level, const std::string& text);

/// Logs @p text under @p tag. @p level is a number that LogLevel has, or one below or above. Safe on any thread.
void logTagged(const char* tag, int level, const char* text);

} // namespace desktop
