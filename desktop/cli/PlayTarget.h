#pragma once

#include "desktop/cli/Session.h"

#include "platform/SocMwTypes.h"

#include <optional>
#include <string>
#include <vector>

namespace desktop {

/// What the user wants to be played, as a play command takes it.
struct PlayTarget {
    std::string list;                  ///< the directory or playlist
    FileType kind = FILE_TYPE_UNKNOWN; ///< photo, video or music
    unsigned int index = 0;            ///< in the list, of the entry to begin with
    std::vector<unsigned int> indices; ///< in the list, of all entries of the kind; ascending
    bool isWholeList = false;          ///< a directory or playlist was named, and not a file

    /// "2 of 5": the place of list entry @p entry among those of the kind.
    std::string placeOf(unsigned int entry) const;
};

/// What is played of entries of these types, FileType each: videos if there are any, else music, else photos; nothing when
/// there is none of them.
std::optional<FileType> kindToPlay(const std::vector<int>& types);

/// Finds what @p typed means: a media file, a directory or a playlist, absolute or below the first stick that has it.
/// Nothing, with an error, when there is nothing to play.
std::optional<PlayTarget> findPlayTarget(Session& session, const std::string& typed);

} // namespace desktop
