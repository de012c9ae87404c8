#pragma once

#include "desktop/cli/Session.h"

namespace desktop {

struct ThumbnailsOptions {
    std::string path;      ///< folder: absolute, or relative to the first stick that has it; empty: all sticks
    std::string file;      ///< the one file to use instead of a folder; a path like the one above
    std::string outFolder; ///< where the pictures are copied to; empty: nowhere
    unsigned int width = 240;
    unsigned int height = 360;
    bool json = false; ///< JSON lines, one a picture
};

/// Makes small pictures of the media files in a folder, or of one file.
void runThumbnails(Session& session, const ThumbnailsOptions& options, Output& output);

} // namespace desktop
