#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace desktop {

/// One entry of a playlist.
struct PlaylistEntry {
    std::string target; ///< the path, as bytes as they stand there; of an URI, its path without escapes
    std::string path;   ///< the target as UTF-8
    std::string title;  ///< UTF-8; empty when the playlist gives none
};

/// Whether @p name is that of a playlist file: M3U, M3U8, PLS, XSPF or CUE.
bool isPlaylistName(std::string_view name);

/// The entries of the playlist file @p name that has @p content. Entries that are no files, such as web addresses, are left
/// out, and so is whatever cannot be understood.
std::vector<PlaylistEntry> parsePlaylist(std::string_view name, std::string content);

} // namespace desktop
