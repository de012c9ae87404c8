#pragma once

#include "desktop/cli/Session.h"

namespace desktop {

struct BrowseOptions {
    std::string path;       ///< absolute, or relative to the first stick that has it; empty: all sticks
    int pageSize = 0;       ///< entries to a page; 0: no pages are shown
    int page = 0;           ///< the one page to show, from 1; 0: all
    bool recursive = false; ///< list the folders below, too
    bool json = false;      ///< JSON lines, one an entry
};

/// Lists a folder for people.
void runBrowse(Session& session, const BrowseOptions& options, Output& output);

} // namespace desktop
