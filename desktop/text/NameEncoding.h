#pragma once

#include <string>
#include <string_view>

namespace desktop {

// A file name is bytes; a JSON text is UTF-8. A byte that is no part of a UTF-8 character is written \xHH (two upper-case
// digits). So that this can be undone, a backslash that would read as the start of such a form is written \x5C; every other
// name, with or without backslashes, stays as it is. Paths may be given whole: "/" is never touched.

/// The text that stands for the file name or path @p bytes; always valid UTF-8.
std::string encodeName(std::string_view bytes);

/// The bytes that @p text stands for: decodeName(encodeName(bytes)) == bytes. Bad bytes in @p text stay.
std::string decodeName(std::string_view text);

/// Replaces only the bytes of @p text that are not UTF-8, each by @p prefix and its two digits.
std::string escapeBadBytes(std::string_view text, std::string_view prefix = "\\x");

} // namespace desktop
