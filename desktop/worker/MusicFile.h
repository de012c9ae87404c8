#pragma once

#include "desktop/worker/TagStream.h"

#include <taglib/tag.h>
#include <taglib/tfile.h>

#include <memory>
#include <vector>

namespace desktop {

/// The name under which a MusicFile's ID3v2 tags have their genre frames; the tag library would take those apart itself, and
/// lose some of the texts in brackets.
constexpr const char* kId3GenreFrame = "TGNR";

/// A music file of a format that the tag library knows, and its tags.
struct MusicFile {
    std::unique_ptr<TagLib::File> file;            ///< null when the format is another one
    int length = 0;                                ///< milliseconds; 0: not known
    std::vector<std::unique_ptr<TagLib::Tag>> own; ///< tags that are not the file's
    std::vector<const TagLib::Tag*> tags;          ///< all of them; what is trusted most comes first
    bool isPartlyKnown = false; ///< length and tags may also be in places where the tag library does not look
};

/// @p stream must outlive the result.
MusicFile openMusicFile(TagStream& stream);

} // namespace desktop
