#include "desktop/text/Utf8.h"

#include <algorithm>

namespace desktop {

namespace {

struct Lead {
    std::size_t length; // bytes of the whole character
    char32_t bits;      // what the first byte adds to the value
    char32_t least;     // smallest value that needs this length
};

Lead leadOf(unsigned char byte)
{
    if (byte < 0x80) {
        return {1, byte, 0};
    }
    if ((byte & 0xE0) == 0xC0) {
        return {2, byte & 0x1FU, 0x80};
    }
    if ((byte & 0xF0) == 0xE0) {
        return {3, byte & 0x0FU, 0x800};
    }
    if ((byte & 0xF8) == 0xF0) {
        return {4, byte & 0x07U, 0x10000};
    }
    return {0, 0, 0};
}

bool isCharacter(char32_t value, char32_t least)
{
    const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
    return value >= least && value <= 0x10FFFF && !surrogate;
}

} // namespace

Character firstCharacter(std::string_view text)
{
    if (text.empty()) {
        return {};
    }
    const Lead lead = leadOf(static_cast<unsigned char>(text.front()));
    if (lead.length == 0 || lead.length > text.size()) {
        return {};
    }
    char32_t value = lead.bits;
    for (std::size_t i = 1; i < lead.length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0) != 0x80) {
            return {};
        }
        value = (value << 6) | (byte & 0x3FU);
    }
    return isCharacter(value, lead.least) ? Character{value, lead.length} : Character{};
}

bool isUtf8(std::string_view text)
{
    while (!text.empty()) {
        const std::size_t length = firstCharacter(text).length;
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

std::u32string charactersOf(std::string_view text)
{
    std::u32string characters;
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        characters.push_back(character.value);
        text.remove_prefix(std::max<std::size_t>(character.length, 1));
    }
    return characters;
}

void cutUtf8(std::string& text, std::size_t bytes)
{
    if (text.size() > bytes) {
        while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xC0) == 0x80) { // within a character
            --bytes;
        }
        text.resize(bytes);
    }
}

} // namespace desktop
