#pragma once

#include "desktop/player/MediaProbe.h"
#include "desktop/player/OpenMedium.h"
#include "desktop/player/SubtitleFiles.h"

#include <memory>
#include <optional>
#include <vector>

namespace desktop {

/// What is known of a medium before it plays.
struct PreparedMedium {
    std::optional<PlayerEnded> refusal; ///< why it cannot be played
    ProbedMedia probed;
    std::shared_ptr<OpenMedium> picture; ///< of a photo: the picture to be shown
    std::vector<StoredSubtitle> subtitles;
};

/// Looks at the medium @p file of kind @p type and what is beside it; takes as long as the files do.
PreparedMedium prepareMedium(FileType type, OpenMedium& file, std::vector<SubtitleFile> subtitles);

/// Why @p file cannot be played any further: by the error that reading it has met.
PlayerEnded readFailure(const OpenMedium& file);

} // namespace desktop
