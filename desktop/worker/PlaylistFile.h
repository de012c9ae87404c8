#pragma once

#include <cstddef>
#include <string>

namespace desktop {

/// Writes what the open playlist file @p playlist lists into @p output, as packEntries does; @p extension, in lower case,
/// says its format. Returns how many entries it has, written or not. Throws MediaError when it is no playlist, or too large.
std::size_t readPlaylist(int playlist, const std::string& extension, int output);

} // namespace desktop
