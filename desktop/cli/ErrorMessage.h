#pragma once

#include <string>
#include <string_view>

namespace desktop {

/// Prints @p message as the program's own line on standard error, made safe for a terminal.
void printError(std::string_view message);

/// The text of errno value @p error.
std::string systemErrorText(int error);

} // namespace desktop
