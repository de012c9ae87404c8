#include "desktop/worker/TagText.h"

#include "desktop/text/AsciiText.h"
#include "desktop/text/LegacyText.h"
#include "desktop/text/Utf8.h"

#include <algorithm>

namespace desktop {

namespace {

constexpr std::size_t kMaxBytes = 1000;

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

} // namespace

void tidyTexts(MediaMetadata& metadata)
{
    std::string* const texts[] = {&metadata.title, &metadata.artist, &metadata.album, &metadata.genre};
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
}

std::string yearOf(std::string_view date)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const std::string_view year = date.substr(0, 4);
    return year.size() == 4 && std::all_of(year.begin(), year.end(), isDigit) ? std::string(year) : "";
}

} // namespace desktop
