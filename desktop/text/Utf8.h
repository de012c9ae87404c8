#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace desktop {

/// One character of a UTF-8 text. A length of 0 says that the text's first byte begins none.
struct Character {
    char32_t value = 0;
    std::size_t length = 0; ///< bytes
};

/// The character at the front of @p text; strict: no overlong forms, no surrogates, nothing beyond U+10FFFF.
Character firstCharacter(std::string_view text);

/// Whether all of @p text is UTF-8.
bool isUtf8(std::string_view text);

/// The characters of the UTF-8 text @p text; a byte that begins none counts as U+0000.
std::u32string charactersOf(std::string_view text);

/// Cuts the UTF-8 text @p text to at most @p bytes, between two characters.
void cutUtf8(std::string& text, std::size_t bytes);

} // namespace desktop
