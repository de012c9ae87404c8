#include "desktop/base/Log.h"

#include <atomic>
#include <cstdio>

namespace desktop {

namespace {

std::atomic<LogLevel> currentLevel{LogLevel::Warning};

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
    logTagged("DESKTOP", static_cast<int>(level), text.c_str());
}

// Standard output, where the plugin prints its own lines: whoever redirects one has both, in order.
void logTagged(const char* tag, int level, const char* text)
{
    if (level >= static_cast<int>(logLevel())) {
        std::printf("[%s] %s\r\n", tag, text);
    }
}

} // namespace desktop
