#pragma once

#include "desktop/cli/Session.h"

#include "desktop/browsing/PhotoSort.h"

namespace desktop {

struct PhotosOptions {
    std::string path; ///< folder: absolute, or relative to the first stick that has it; empty: all sticks
    PhotoOrder sort = PhotoOrder::Name;
    bool descending = false; ///< last first
    bool json = false;       ///< JSON lines, one a photo
};

/// Lists the photos of a folder in the order asked for.
void runPhotos(Session& session, const PhotosOptions& options, Output& output);

} // namespace desktop
