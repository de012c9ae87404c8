#pragma once

#include <string>

namespace desktop {

/// Makes @p folder, which the user has named to be written to, unless it is there. Returns 0, or why it cannot be used as an
/// errno value.
int makeUserFolder(const std::string& folder);

} // namespace desktop
