#include "platform/SocMwLog.h"

#include "desktop/base/Log.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>

int gSocMwStorageLogLevel = static_cast<int>(desktop::LogLevel::Warning);

int SocMwLogLevelGet()
{
    return static_cast<int>(desktop::logLevel());
}

void SocMwLogPrintEx(const char* tag, int level, char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    char* text = nullptr;
    const int length = vasprintf(&text, format, arguments);
    va_end(arguments);
    if (length >= 0) {
        const std::unique_ptr<char, decltype(&std::free)> owned(text, &std::free);
        desktop::logTagged(tag, level, text);
    }
}
