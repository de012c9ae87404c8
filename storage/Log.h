#pragma once

#include "platform/SocMwLog.h"

#include <cstdio>

namespace tvfirmware {

/// A line is printed while the platform's level is below its own.
enum LogLevel { LOG_LEVEL_DBG = 1, LOG_LEVEL_INFO = 2, LOG_LEVEL_WAR = 3, LOG_LEVEL_ERR = 4 };

/// Stores the platform's current level where its tools look for it, and tests it.
inline bool logLevelPasses(LogLevel level)
{
    gSocMwStorageLogLevel = SocMwLogLevelGet();
    return gSocMwStorageLogLevel < level;
}

/// The local time at construction, as ctime_r writes it but for the line end.
class LogTime {
public:
    LogTime();
    const char* text() const { return m_text; }

private:
    char m_text[26]; // what ctime_r asks for
};

} // namespace tvfirmware

// One line on standard output. The format is a literal, checked by the compiler; text from outside is only ever an argument.
// A suppressed line costs one level read and one compare: its arguments are not evaluated.
#define STORAGE_LOG(function, level, format, ...)                                                                    \
    do {                                                                                                             \
        if (tvfirmware::logLevelPasses(tvfirmware::LOG_LEVEL_##level))                                               \
            std::printf("[%s][%s][%s][%s-%d]" format "\r\n", tvfirmware::LogTime().text(), "DAEMON-STORAGEMEDIAMGR", \
                        #level, function, __LINE__ __VA_OPT__(, ) __VA_ARGS__);                                      \
    } while (false)

#define LOG_DBG(...) STORAGE_LOG(__func__, DBG, __VA_ARGS__)
#define LOG_INFO(...) STORAGE_LOG(__func__, INFO, __VA_ARGS__)
#define LOG_WAR(...) STORAGE_LOG(__func__, WAR, __VA_ARGS__)
#define LOG_ERR(...) STORAGE_LOG(__func__, ERR, __VA_ARGS__)
