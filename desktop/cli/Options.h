#pragma once

#include "desktop/cli/BrowseCommand.h"
#include "desktop/cli/GroupsCommand.h"
#include "desktop/cli/InfoCommand.h"
#include "desktop/cli/SearchCommand.h"
#include "desktop/cli/ThumbnailsCommand.h"

#include "desktop/base/Log.h"

#include <optional>
#include <string>
#include <vector>

namespace desktop {

/// What the user asks the program to do.
struct Options {
    enum class Command { Commands, Shell, Browse, Search, Groups, Info, Thumbnails };

    /// Whether it goes through the media browser, for people, and so needs a stick.
    bool isForPeople() const { return command != Command::Commands && command != Command::Shell; }

    Command command = Command::Commands;
    std::vector<std::string> sticks;
    bool mountedSticks = false; ///< take those that the computer mounts, too
    std::string cacheFolder;    ///< empty: nothing is kept
    std::string pluginFile;
    std::optional<LogLevel> logLevel;
    std::string logFile; ///< empty: none named
    BrowseOptions browse;
    SearchOptions search;
    GroupsOptions groups;
    InfoOptions info;
    ThumbnailsOptions thumbnails;
};

/// Reads the command line into @p options. An exit status when there is nothing to do but leave: help has been shown, or an
/// error told on standard error.
std::optional<int> parseOptions(int argc, char** argv, Options& options);

} // namespace desktop
