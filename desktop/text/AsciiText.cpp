#include "desktop/text/AsciiText.h"

#include <algorithm>

namespace desktop {

std::string lowerCase(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

std::string trimmed(std::string_view text)
{
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t begin = text.find_first_not_of(kBlanks);
    return begin == std::string_view::npos ? ""
                                           : std::string(text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin));
}

std::string onOneLine(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, ' ');
    return trimmed(text);
}

} // namespace desktop
