#include "platform/SocMwLog.h"

#include "desktop/base/Log.h"

#include <cstdarg>

int gSocMwStorageLogLevel = static_cast<int>(desktop::LogLevel::Warning);

int SocMwLogLevelGet()
{
    return static_cast<int>(desktop::logLevel());
}

void SocMwLogPrintEx(const char* tag, int level, char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    desktop::logTagged(tag, level, format, arguments);
    va_end(arguments);
}
