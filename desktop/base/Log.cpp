#include "desktop/base/Log.h"

#include <atomic>
#include <cstdio>

namespace desktop {

namespace {

std::atomic<LogLevel> currentLevel{LogLevel::Warning};

void logFormatted(const char* tag, LogLevel level, const char* format, ...) __attribute__((format(printf, 3, 4)));

void logFormatted(const char* tag, LogLevel level, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    logTagged(tag, static_cast<int>(level), format, arguments);
    va_end(arguments);
}

} // namespace

LogLevel logLevel()
{
    return currentLevel;
}

void setLogLevel(LogLevel level)
{
    currentLevel = level;
}

void logLine(LogLevel level, const std::string& text)
{
    logFormatted("DESKTOP", level, "%s", text.c_str());
}

// Standard output, where the plugin prints its own lines: whoever redirects one has both, in order.
void logTagged(const char* tag, int level, const char* format, std::va_list arguments)
{
    if (level < static_cast<int>(logLevel())) {
        return;
    }
    flockfile(stdout);
    std::printf("[%s] ", tag);
    std::vprintf(format, arguments);
    std::printf("\r\n");
    funlockfile(stdout);
}

} // namespace desktop
