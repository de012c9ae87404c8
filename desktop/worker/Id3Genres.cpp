#include "desktop/worker/Id3Genres.h"

#include <taglib/id3v1genres.h>

#include <algorithm>
#include <string_view>

namespace desktop {

namespace {

/// The genre that @p reference stands for; empty when it is none.
std::string genreOf(std::string_view reference)
{
    if (reference == "RX") {
        return "Remix";
    }
    if (reference == "CR") {
        return "Cover";
    }
    const bool isNumber = !reference.empty() && reference.size() <= 3 &&
                          std::all_of(reference.begin(), reference.end(), [](char c) { return c >= '0' && c <= '9'; });
    return isNumber ? TagLib::ID3v1::genre(std::stoi(std::string(reference))).to8Bit(true) : "";
}

} // namespace

std::vector<std::string> genresOfId3(const std::string& value)
{
    std::vector<std::string> genres;
    std::string_view rest = value;
    while (rest.size() > 2 && rest[0] == '(' && rest[1] != '(') {
        const std::size_t end = rest.find(')');
        const std::string genre = end != std::string_view::npos ? genreOf(rest.substr(1, end - 1)) : "";
        if (genre.empty()) {
            break;
        }
        genres.push_back(genre);
        rest.remove_prefix(end + 1);
    }
    if (rest.size() > 1 && rest[0] == '(' && rest[1] == '(') {
        rest.remove_prefix(1);
    }
    if (!rest.empty()) {
        const std::string genre = genreOf(rest);
        genres.push_back(genre.empty() ? std::string(rest) : genre);
    }
    return genres;
}

} // namespace desktop
