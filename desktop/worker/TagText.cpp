#include "desktop/worker/TagText.h"

#include "desktop/text/AsciiText.h"
#include "desktop/text/FoldedText.h"
#include "desktop/text/LegacyText.h"
#include "desktop/text/Utf8.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <vector>

namespace desktop {

namespace {

constexpr std::size_t kMaxBytes = 1000;
constexpr std::size_t kMaxValues = 30; // of one tag; and together they have
constexpr std::size_t kMaxBytesOfValues = 4000;

// The bytes behind a text of Latin letters only; empty when there are others.
std::string toLatin(std::string_view text)
{
    std::string bytes;
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        if (character.value > 0xFF) {
            return "";
        }
        bytes += static_cast<char>(character.value);
        text.remove_prefix(character.length);
    }
    return bytes;
}

std::string tidied(const std::string& stored, const char* charset)
{
    std::string text = isUtf8(stored) ? stored : toUtf8(stored, charset);
    const std::string bytes = toLatin(text);
    if (!bytes.empty() && isUtf8(bytes)) {
        text = bytes;
    }
    text = onOneLine(std::move(text));
    cutUtf8(text, kMaxBytes);
    return text;
}

std::vector<std::string> distinct(const std::vector<std::string>& values)
{
    std::vector<std::string> kept;
    std::set<std::string> folded;
    std::size_t bytes = 0;
    for (const std::string& value : values) {
        bytes += value.size();
        const bool isNew = !value.empty() && folded.insert(foldedText(value)).second;
        if (isNew && kept.size() < kMaxValues && bytes <= kMaxBytesOfValues) {
            kept.push_back(value);
        }
    }
    return kept;
}

} // namespace

void tidyTexts(MediaMetadata& metadata)
{
    std::vector<std::string*> texts = {&metadata.title, &metadata.album};
    for (std::vector<std::string>* const values : {&metadata.artists, &metadata.genres}) {
        std::transform(values->begin(), values->end(), std::back_inserter(texts), [](std::string& text) { return &text; });
    }
    std::string sample;
    for (const std::string* const text : texts) {
        if (!isUtf8(*text)) {
            sample += *text + '\n';
        }
    }
    const char* const charset = guessCharset(sample);
    for (std::string* const text : texts) {
        *text = tidied(*text, charset);
    }
    metadata.artists = distinct(metadata.artists);
    metadata.genres = distinct(metadata.genres);
}

std::string yearOf(std::string_view date)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const std::string_view year = date.substr(0, 4);
    return year.size() == 4 && std::all_of(year.begin(), year.end(), isDigit) ? std::string(year) : "";
}

} // namespace desktop
