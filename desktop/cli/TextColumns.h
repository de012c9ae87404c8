#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace desktop {

/// Whether a terminal or a viewer may take @p c for something to do instead of something to show: control characters, line
/// and paragraph separators, and what changes the direction of writing.
bool isUnsafeForTerminal(char32_t c);

/// @p text made safe for a terminal: characters that would move the cursor, change colours or turn the direction of writing
/// are written as <U+HHHH>, bytes that are not UTF-8 as \xHH.
std::string visibleText(std::string_view text);

/// How many columns of a terminal the visible text @p text takes.
std::size_t displayWidth(std::string_view text);

/// @p text filled up with spaces to @p columns.
std::string padRight(std::string_view text, std::size_t columns);
std::string padLeft(std::string_view text, std::size_t columns);

/// The beginning of @p text that fits into @p columns.
std::string truncated(std::string_view text, std::size_t columns);

/// @p seconds as "3:04" or "1:02:03"; "-" for 0, which stands for not known.
std::string humanDuration(unsigned int seconds);

} // namespace desktop
