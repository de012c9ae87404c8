#pragma once

#include <string>
#include <string_view>

namespace desktop {

// What is needed of texts whose bytes may be of any charset: only ASCII characters are looked at.

/// @p text with the letters A to Z in lower case.
std::string lowerCase(std::string_view text);

/// @p text without blanks, tabs and line ends at its beginning and end.
std::string trimmed(std::string_view text);

/// @p text without control characters: each is a blank, and none stands at its ends.
std::string onOneLine(std::string text);

} // namespace desktop
