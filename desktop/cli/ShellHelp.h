#pragma once

#include <string>

namespace desktop {

/// What the shell on a terminal says to "help": how commands are typed, and their names.
std::string shellHelp();

/// What the shell on a terminal says to "help NAME": what command @p name does, the keys of its request, and what it means
/// on the desktop. Empty when there is no such command.
std::string commandHelp(const std::string& name);

} // namespace desktop
