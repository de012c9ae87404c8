#pragma once

#include <string>
#include <vector>

namespace desktop {

/// One entry of a playlist.
struct PlaylistEntry {
    std::string target; ///< the path, as bytes as they stand there; of an URI, its path without escapes
    std::string path;   ///< the target as UTF-8
    std::string title;  ///< UTF-8; empty when the playlist gives none
};

using PlaylistEntries = std::vector<PlaylistEntry>;

} // namespace desktop
