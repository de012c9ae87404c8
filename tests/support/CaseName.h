#pragma once

#include <cctype>
#include <cstddef>
#include <string>

namespace testsupport {

/// Name of row @p index of a parametrised test, made of @p text: its letters and digits, "Minus" for a sign before a number
/// and "_" for what else stands between them.
inline std::string caseName(std::size_t index, const std::string& text)
{
    const auto isPlain = [](char letter) { return std::isalnum(static_cast<unsigned char>(letter)) != 0; };
    std::string words;
    bool apart = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isSign = text[i] == '-' && i + 1 < text.size() && isPlain(text[i + 1]);
        if (isSign || isPlain(text[i])) {
            words += (apart ? "_" : "") + (isSign ? "Minus" : std::string(1, text[i]));
        }
        apart = !isSign && !isPlain(text[i]);
    }
    const std::string fallback = text.empty() ? "Empty" : "Signs";
    return std::to_string(index) + "_" + (words.empty() ? fallback : words);
}

} // namespace testsupport
