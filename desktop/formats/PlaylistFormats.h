#pragma once

#include "desktop/formats/PlaylistEntry.h"

#include <optional>
#include <string>
#include <string_view>

namespace desktop {

/// The entries of a playlist file that has @p content, of the format that @p extension, in lower case, stands for: M3U,
/// M3U8, PLS, XSPF, CUE, ASX or WPL; one that stands for none leaves it to the content. Entries that are web addresses are
/// left out, and so is whatever cannot be understood. Nothing when it is no playlist.
std::optional<PlaylistEntries> parsePlaylist(std::string_view extension, std::string content);

} // namespace desktop
