#pragma once

#include "desktop/cli/Session.h"

namespace desktop {

struct SearchOptions {
    std::string path;  ///< absolute, or relative to the first stick that has it; empty: all sticks
    bool json = false; ///< JSON lines: one a file, and one with the totals
};

/// Lists the videos in a folder and all below it, as they are found.
void runSearch(Session& session, const SearchOptions& options, Output& output);

} // namespace desktop
