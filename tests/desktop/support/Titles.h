#pragma once

#include "tests/desktop/support/LegacyBytes.h"

#include "desktop/text/Utf8.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace testsupport {

/// Titles of songs and films in one language, those that have letters beyond ASCII.
struct TitleLanguage {
    std::string name;
    std::string charset; ///< in which its texts were written before UTF-8
    std::vector<std::string> titles;
};

inline void PrintTo(const TitleLanguage& language, std::ostream* out)
{
    *out << language.name;
}

inline std::vector<std::string> splitAt(const std::string& text, char separator)
{
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

/// The titles in the file @p path, which says how they are stored.
inline std::vector<TitleLanguage> readTitles(const std::string& path)
{
    std::vector<TitleLanguage> languages;
    std::vector<std::string> beginnings;
    std::string between;
    const auto add = [&languages](const std::string& title) {
        if (std::any_of(title.begin(), title.end(), [](char c) { return (c & 0x80) != 0; })) {
            languages.back().titles.push_back(title);
        }
    };
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line.front() == '#') {
            continue;
        }
        if (line.front() == '+') {
            beginnings = splitAt(line.substr(1), '|');
        } else if (line.front() == '&') {
            for (const std::string& beginning : beginnings) {
                for (const std::string& end : splitAt(line.substr(1), '|')) {
                    add(beginning + between + end);
                }
            }
        } else if (line.find('|') == std::string::npos) {
            const std::vector<std::string> words = splitAt(line, ' ');
            languages.push_back({words.at(0), words.at(1), {}});
            between = words.size() > 2 ? "" : " ";
        } else {
            for (const std::string& title : splitAt(line, '|')) {
                add(title);
            }
        }
    }
    return languages;
}

/// How many of a hundred were read as they were meant.
struct ReadShare {
    double single = 0; ///< of titles alone
    double album = 0;  ///< of titles ten together
};

/// What @p reads makes of the titles of @p language; it gets bytes and returns UTF-8.
inline ReadShare shareRead(const TitleLanguage& language, const std::function<std::string(const std::string&)>& reads)
{
    const std::size_t albums = language.titles.size() / 10;
    std::vector<std::string> texts(albums);
    double single = 0;
    for (std::size_t i = 0; i < language.titles.size(); ++i) {
        const std::string& title = language.titles[i];
        single += reads(writtenIn(title, language.charset.c_str())) == title ? 1 : 0;
        texts[i % albums] += title + '\n'; // neighbours have words in common
    }
    double album = 0;
    for (const std::string& text : texts) {
        album += reads(writtenIn(text, language.charset.c_str())) == text ? 1 : 0;
    }
    return {100 * single / static_cast<double>(language.titles.size()), 100 * album / static_cast<double>(albums)};
}

} // namespace testsupport
