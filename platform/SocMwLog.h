#pragma once

// The platform's log level and logger, C++ functions like the rest of the boundary. Both are safe on any thread.

/// The level that the plugin stored last, kept here by the platform for its own tools.
extern int gSocMwStorageLogLevel;

/// The current level: a line of level DBG is printed below 1, INFO below 2, WAR below 3, ERR below 4.
int SocMwLogLevelGet();

/// Logs one line under @p tag; the platform decides whether @p level is shown. @p format is not written to.
void SocMwLogPrintEx(const char* tag, int level, char* format, ...) __attribute__((format(printf, 3, 4)));
