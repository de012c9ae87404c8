#include "platform/SocMwLog.h"

#include "desktop/base/Log.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>

namespace {

std::atomic<int> currentLevel{static_cast<int>(desktop::LogLevel::Warning)};

} // namespace

int gSocMwStorageLogLevel = static_cast<int>(desktop::LogLevel::Warning);

int SocMwLogLevelGet()
{
    return currentLevel;
}

// Standard output, where the plugin prints its own lines: whoever redirects one has both, in order.
void SocMwLogPrintEx(const char* tag, int level, char* format, ...)
{
    if (level < currentLevel) {
        return;
    }
    std::va_list arguments;
    va_start(arguments, format);
    flockfile(stdout);
    std::printf("[%s] ", tag);
    std::vprintf(format, arguments);
    std::printf("\r\n");
    funlockfile(stdout);
    va_end(arguments);
}

namespace desktop {

void setLogLevel(LogLevel level)
{
    currentLevel = static_cast<int>(level);
}

void logLine(LogLevel level, const std::string& text)
{
    SocMwLogPrintEx("DESKTOP", static_cast<int>(level), const_cast<char*>("%s"), text.c_str());
}

} // namespace desktop
