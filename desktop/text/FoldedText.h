#pragma once

#include <string>
#include <string_view>

namespace desktop {

/// What the UTF-8 text @p text has in common with all its spellings: the same letters composed or decomposed, in whatever
/// case, give the same result. For comparing only; a text that is not UTF-8 stays as it is.
std::string foldedText(std::string_view text);

} // namespace desktop
