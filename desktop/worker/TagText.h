#pragma once

#include <string>
#include <string_view>

namespace desktop {

/// A tag's text as it can be shown: valid UTF-8 on one line, of bounded length. Bytes that are no UTF-8 are taken for Latin
/// letters, and UTF-8 that was stored as Latin letters is set right.
std::string tagText(std::string_view tag);

/// The year that @p date, a text of any form, begins with: four digits, or empty.
std::string yearOf(std::string_view date);

} // namespace desktop
