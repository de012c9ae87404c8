#pragma once

#include "desktop/cli/BrowseCommand.h"
#include "desktop/cli/GroupsCommand.h"
#include "desktop/cli/InfoCommand.h"
#include "desktop/cli/PhotosCommand.h"
#include "desktop/cli/PlayCommand.h"
#include "desktop/cli/PlaylistsCommand.h"
#include "desktop/cli/SearchCommand.h"
#include "desktop/cli/ThumbnailsCommand.h"

#include "desktop/base/Log.h"

#include <optional>
#include <string>
#include <vector>

namespace desktop {

/// What the user asks the program to do.
struct Options {
    enum class Command { Commands, Shell, Browse, Search, Groups, Info, Thumbnails, Playlists, Photos, Play };

    /// Whether the command uses the media browser, and so needs a stick.
    bool isForPeople() const { return command != Command::Commands && command != Command::Shell; }

    Command command = Command::Commands;
    std::vector<std::string> sticks;
    bool mountedSticks = false; ///< also those that the computer mounts
    std::string cacheFolder;    ///< empty: nothing is kept
    bool cacheIsGiven = false;  ///< the user has named the folder, and so wants it
    std::string pluginFile;
    std::optional<LogLevel> logLevel;
    std::string logFile; ///< empty: none named
    BrowseOptions browse;
    SearchOptions search;
    GroupsOptions groups;
    InfoOptions info;
    ThumbnailsOptions thumbnails;
    PlaylistsOptions playlists;
    PhotosOptions photos;
    PlayArguments play;
    PlayerOutput shellOutput; ///< of what is played by way of the shell
};

/// Reads the command line into @p options. Returns an exit status when the program is to end: help has been written to
/// @p output, or an error has been printed on standard error.
std::optional<int> parseOptions(int argc, char** argv, Options& options, Output& output);

} // namespace desktop
