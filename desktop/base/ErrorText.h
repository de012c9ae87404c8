#pragma once

#include <exception>
#include <string>

namespace desktop {

/// What @p error says, for people: the file and the reason, without what the C++ library puts around them.
std::string errorText(const std::exception& error);

} // namespace desktop
