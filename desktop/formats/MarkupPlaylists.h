#pragma once

#include "desktop/formats/PlaylistEntry.h"

#include <string>

namespace desktop {

// Playlists in a markup that looks like XML and often is none: names in any case, values without quotes, a bare "&". Texts
// stay in the charset of the file.

/// The entries of the ASX metafile @p content; of each, the first address.
PlaylistEntries parseAsx(std::string content);

/// The media of the WPL playlist @p content.
PlaylistEntries parseWpl(std::string content);

} // namespace desktop
