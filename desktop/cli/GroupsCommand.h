#pragma once

#include "desktop/cli/Session.h"

#include "platform/SocMwTypes.h"

namespace desktop {

struct GroupsOptions {
    std::string path; ///< absolute, or relative to the first stick that has it; empty: all sticks
    GroupFileType by = GROUP_TYPE_ARTIST;
    std::string key;         ///< the one group whose files are listed; empty: the groups are
    bool descending = false; ///< last first
    bool json = false;       ///< JSON lines, one a group or file
};

/// Lists the groups of the music or photos in a folder and all below it, or the files of one group.
void runGroups(Session& session, const GroupsOptions& options, Output& output);

} // namespace desktop
