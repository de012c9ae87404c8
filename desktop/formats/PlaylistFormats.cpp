#include "desktop/formats/PlaylistFormats.h"

#include "desktop/formats/MarkupPlaylists.h"
#include "desktop/formats/PlaylistText.h"
#include "desktop/formats/XspfPlaylist.h"
#include "desktop/text/AsciiText.h"
#include "desktop/text/LegacyText.h"
#include "desktop/text/Utf8.h"

#include <algorithm>
#include <charconv>
#include <map>

namespace desktop {

namespace {

constexpr std::size_t kMaxTitle = 1000; // bytes

// The comma that the title of an extended M3U line follows; those in quoted attributes before it do not count.
std::size_t commaBeforeTitle(std::string_view line)
{
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        quoted = quoted != (line[i] == '"');
        if (line[i] == ',' && !quoted) {
            return i;
        }
    }
    return line.find(','); // a quote is missing
}

PlaylistEntries parseM3u(std::string content)
{
    PlaylistEntries entries;
    std::string title;
    for (const std::string& line : linesOf(withoutMark(std::move(content)))) {
        if (line.starts_with("#EXTINF:")) {
            const std::size_t comma = commaBeforeTitle(line);
            title = comma != std::string::npos ? trimmed(std::string_view(line).substr(comma + 1)) : "";
        } else if (!line.empty() && line.front() != '#') {
            addEntry(entries, line, title);
            title.clear();
        }
    }
    return entries;
}

// The number that @p key has behind @p name; nothing when it is another key.
std::optional<int> numberOf(std::string_view key, std::string_view name)
{
    int number = 0;
    if (!key.starts_with(name)) {
        return std::nullopt;
    }
    std::from_chars(key.data() + name.size(), key.data() + key.size(), number);
    return number;
}

PlaylistEntries parsePls(std::string content)
{
    std::map<int, PlaylistEntry> numbered;
    for (const std::string& line : linesOf(withoutMark(std::move(content)))) {
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos) {
            continue;
        }
        const std::string key = lowerCase(trimmed(line.substr(0, equals)));
        const std::string value = trimmed(std::string_view(line).substr(equals + 1));
        if (const auto file = numberOf(key, "file")) {
            numbered[*file].target = value;
        } else if (const auto title = numberOf(key, "title")) {
            numbered[*title].title = value;
        }
    }
    PlaylistEntries entries;
    for (const auto& [number, entry] : numbered) {
        addEntry(entries, entry.target, entry.title);
    }
    return entries;
}

// The files of the disc; its tracks are parts of them.
PlaylistEntries parseCue(std::string content)
{
    PlaylistEntries entries;
    for (const std::string& line : linesOf(withoutMark(std::move(content)))) {
        if (lowerCase(line.substr(0, 5)) != "file ") {
            continue;
        }
        const std::string rest = trimmed(line.substr(5));
        const bool quoted = rest.starts_with("\"");
        const std::size_t end = quoted ? rest.find('"', 1) : rest.rfind(' '); // the kind of file comes last
        addEntry(entries, quoted ? rest.substr(1, end - 1) : rest.substr(0, end), "");
    }
    return entries;
}

using Parser = PlaylistEntries (*)(std::string content);

struct Format {
    std::string_view extension;
    std::string_view beginning; ///< of a file that has no such extension; empty: it tells nothing
    Parser parser;
};

constexpr Format kFormats[] = {
    {"m3u", "#EXTM3U", &parseM3u}, {"m3u8", "", &parseM3u}, {"pls", "[playlist]", &parsePls}, {"xspf", "", &parseXspf},
    {"cue", "", &parseCue},        {"asx", "", &parseAsx},  {"wpl", "", &parseWpl},
};

Parser parserOf(std::string_view extension, std::string_view content)
{
    for (const Format& format : kFormats) {
        if (format.extension == extension) {
            return format.parser;
        }
    }
    for (const Format& format : kFormats) {
        if (!format.beginning.empty() && content.starts_with(format.beginning)) {
            return format.parser;
        }
    }
    return nullptr;
}

// One program wrote them all in one charset.
void readTexts(PlaylistEntries& entries)
{
    std::string sample;
    for (const PlaylistEntry& entry : entries) {
        for (const std::string& text : {entry.target, entry.title}) {
            sample += isUtf8(text) ? "" : text + '\n';
        }
    }
    const char* const charset = guessCharset(sample);
    const auto read = [charset](const std::string& text) { return isUtf8(text) ? text : toUtf8(text, charset); };
    for (PlaylistEntry& entry : entries) {
        entry.path = read(entry.target);
        entry.title = onOneLine(read(entry.title));
        cutUtf8(entry.title, kMaxTitle);
    }
}

} // namespace

std::optional<PlaylistEntries> parsePlaylist(std::string_view extension, std::string content)
{
    const Parser parser = parserOf(extension, content);
    if (parser == nullptr) {
        return std::nullopt;
    }
    PlaylistEntries entries = parser(std::move(content));
    readTexts(entries);
    return entries;
}

} // namespace desktop
