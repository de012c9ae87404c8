#pragma once

#include "desktop/formats/PlaylistEntry.h"

#include <string>
#include <string_view>
#include <vector>

namespace desktop {

// What the parsers of playlists share.

/// @p content without the mark that some programs write first; UTF-16 becomes UTF-8.
std::string withoutMark(std::string content);

/// The XML document @p content as UTF-8, whether it is marked as UTF-16 or declares another charset; what declares none that
/// is known stays as it is.
std::string xmlText(std::string content);

/// The lines of @p content, whichever ends they have, without blanks around them.
std::vector<std::string> linesOf(std::string_view content);

/// Appends an entry that leads to @p target, a path or a "file" URI; other URIs are no files and are left out.
void addEntry(PlaylistEntries& entries, const std::string& target, const std::string& title);

} // namespace desktop
