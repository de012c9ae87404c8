#pragma once

#include "desktop/cli/Session.h"

namespace desktop {

struct InfoOptions {
    std::vector<std::string> files; ///< each absolute, or relative to the first stick that has it
    bool json = false;              ///< JSON lines, one a file
};

/// Describes media files.
void runInfo(Session& session, const InfoOptions& options, Output& output);

} // namespace desktop
