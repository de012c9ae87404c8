#include "desktop/cli/TextColumns.h"

#include "desktop/text/NameEncoding.h"
#include "desktop/text/Utf8.h"

#include <array>
#include <cstdio>
#include <cwchar>

namespace desktop {

namespace {

std::size_t columnsOf(char32_t c)
{
    const int columns = wcwidth(static_cast<wchar_t>(c));
    return columns > 0 ? static_cast<std::size_t>(columns) : 0;
}

std::string spaces(std::string_view text, std::size_t columns)
{
    const std::size_t width = displayWidth(text);
    return std::string(width < columns ? columns - width : 0, ' ');
}

} // namespace

bool isUnsafeForTerminal(char32_t c)
{
    const bool control = c < 0x20 || (c >= 0x7F && c < 0xA0);
    const bool lineEnd = c == 0x2028 || c == 0x2029;
    const bool direction =
        c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
    return control || lineEnd || direction;
}

std::string visibleText(std::string_view text)
{
    const std::string valid = escapeBadBytes(text);
    std::string out;
    for (std::string_view rest = valid; !rest.empty();) {
        const Character character = firstCharacter(rest);
        if (isUnsafeForTerminal(character.value)) {
            std::array<char, 16> name = {};
            std::snprintf(name.data(), name.size(), "<U+%04X>", static_cast<unsigned int>(character.value));
            out += name.data();
        } else {
            out += rest.substr(0, character.length);
        }
        rest.remove_prefix(character.length);
    }
    return out;
}

std::size_t displayWidth(std::string_view text)
{
    std::size_t width = 0;
    for (Character character; (character = firstCharacter(text)).length > 0; text.remove_prefix(character.length)) {
        width += columnsOf(character.value);
    }
    return width;
}

std::string padRight(std::string_view text, std::size_t columns)
{
    return std::string(text) + spaces(text, columns);
}

std::string padLeft(std::string_view text, std::size_t columns)
{
    return spaces(text, columns) + std::string(text);
}

std::string truncated(std::string_view text, std::size_t columns)
{
    std::size_t length = 0;
    for (Character character; (character = firstCharacter(text.substr(length))).length > 0; length += character.length) {
        const std::size_t width = columnsOf(character.value);
        if (width > columns) {
            break;
        }
        columns -= width;
    }
    return std::string(text.substr(0, length));
}

std::string humanDuration(unsigned int seconds)
{
    std::array<char, 32> text = {};
    if (seconds == 0) {
        return "-";
    }
    if (seconds < 3600) {
        std::snprintf(text.data(), text.size(), "%u:%02u", seconds / 60, seconds % 60);
    } else {
        std::snprintf(text.data(), text.size(), "%u:%02u:%02u", seconds / 3600, seconds / 60 % 60, seconds % 60);
    }
    return text.data();
}

} // namespace desktop
