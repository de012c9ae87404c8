#pragma once

#include "desktop/formats/PlaylistEntry.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace desktop {

// How the entries of a playlist come from a worker: as bytes in a file, for they may be more than a message holds. Whoever
// takes them trusts them no more than the playlist.

/// The most bytes of a playlist file.
constexpr std::size_t kMaxPlaylistFile = 4 << 20;
/// The most entries of a playlist.
constexpr std::size_t kMaxPlaylistEntries = 100000;
/// The most bytes of all packed entries.
constexpr std::size_t kMaxPackedEntries = 15 << 20;

/// The entries @p entries as bytes, as many of them as the bounds allow. A path that is longer than any is left empty.
std::string packEntries(const PlaylistEntries& entries);

/// The entries in @p bytes up to the first that is not whole, or out of bounds; a path or title that is no UTF-8 is empty.
PlaylistEntries unpackEntries(std::string_view bytes);

} // namespace desktop
