#pragma once

#include "desktop/cli/Session.h"

namespace desktop {

struct PlaylistsOptions {
    std::string path;  ///< folder or playlist: absolute, or relative to the first stick that has it; empty: all sticks
    bool json = false; ///< JSON lines, one a playlist or entry
};

/// Lists the playlists in a folder and all below it, or the entries of one playlist.
void runPlaylists(Session& session, const PlaylistsOptions& options, Output& output);

} // namespace desktop
