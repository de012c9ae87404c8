#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace desktop {

/// One entry of a playlist.
struct PlaylistEntry {
    std::string target; ///< the path, as bytes as they stand there; of an URI, its path without escapes
    std::string title;  ///< UTF-8; empty when the playlist gives none
};

/// Whether @p name is that of a playlist file: M3U, M3U8, PLS, XSPF or CUE.
bool isPlaylistName(std::string_view name);

/// The entries of the playlist file @p name that has @p content. Entries that are no files, such as web addresses, are left
/// out, and so is whatever cannot be understood.
std::vector<PlaylistEntry> parsePlaylist(std::string_view name, std::string content);

/// The text that @p bytes stand for: UTF-8 when they are, else Windows-1252.
std::string textOf(const std::string& bytes);

} // namespace desktop
