#pragma once

#include <string>

namespace desktop {

/// Gives the process a view of the computer in which "/mtd_rwarea" is its own, in memory, and gone with the process; all
/// else is as it was, and what is mounted later shows too. To be called before any thread starts. Returns why it cannot be
/// done; empty when it has been. Then, and only then, may the plugin run shell commands (see SystemGuard.cpp).
std::string makeDirectoriesPrivate();

/// Whether makeDirectoriesPrivate has succeeded.
bool directoriesArePrivate();

} // namespace desktop
