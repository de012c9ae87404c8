#pragma once

#include <string>

namespace desktop {

// A letter with a mark can be one character or two. Computers differ in which form they give to file names.

/// @p text with letters and marks as one character where there is one (NFC); empty when it is not UTF-8.
std::string composed(const std::string& text);

/// @p text with letters and marks as characters of their own (NFD); empty when it is not UTF-8.
std::string decomposed(const std::string& text);

} // namespace desktop
