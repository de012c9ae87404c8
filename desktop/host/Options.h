#pragma once

#include "desktop/host/BrowseCommand.h"

#include "desktop/middleware/Log.h"

#include <optional>
#include <string>
#include <vector>

namespace desktop {

/// What the user asks the program to do.
struct Options {
    enum class Command { Shell, Browse, Commands };

    Command command = Command::Commands;
    std::vector<std::string> sticks;
    bool mountedSticks = false; ///< take those that the computer mounts, too
    std::string cacheFolder;    ///< empty: nothing is kept
    std::string pluginFile;
    std::optional<LogLevel> logLevel;
    std::string logFile; ///< empty: none named
    BrowseOptions browse;
};

/// Reads the command line into @p options. An exit status when there is nothing to do but leave: help has been shown, or an
/// error told on standard error.
std::optional<int> parseOptions(int argc, char** argv, Options& options);

} // namespace desktop
