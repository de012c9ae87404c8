#include "desktop/playlists/PlaylistFormats.h"

#include "desktop/text/AsciiText.h"
#include "desktop/text/LegacyText.h"
#include "desktop/text/Utf8.h"

#include <expat.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>
#include <sstream>

namespace desktop {

namespace {

using Entries = std::vector<PlaylistEntry>;

// Without the mark that some programs write first; UTF-16 becomes UTF-8.
std::string withoutMark(std::string content)
{
    if (content.starts_with("\xEF\xBB\xBF")) {
        return content.substr(3);
    }
    const bool wide = content.starts_with("\xFF\xFE") || content.starts_with("\xFE\xFF");
    return wide ? toUtf8(content, "UTF-16") : content;
}

std::string withoutEscapes(std::string_view uri)
{
    std::string path;
    for (std::size_t i = 0; i < uri.size(); ++i) {
        const std::string digits(uri[i] == '%' ? uri.substr(i + 1, 2) : "");
        if (digits.size() == 2 && digits.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos) {
            path.push_back(static_cast<char>(std::strtol(digits.c_str(), nullptr, 16)));
            i += 2;
        } else {
            path.push_back(uri[i]);
        }
    }
    return path;
}

bool hasScheme(std::string_view target)
{
    return target.find("://") != std::string_view::npos;
}

void add(Entries& entries, std::string target, const std::string& title)
{
    constexpr std::string_view kFile = "file://";
    if (lowerCase(target.substr(0, kFile.size())).starts_with(kFile)) {
        const std::size_t slash = target.find('/', kFile.size()); // the host before it does not matter
        target = slash != std::string::npos ? withoutEscapes(target.substr(slash)) : "";
    }
    if (!target.empty() && !hasScheme(target)) {
        entries.push_back({std::move(target), "", title});
    }
}

Entries parseM3u(const std::string& content)
{
    constexpr std::string_view kInfo = "#EXTINF:";
    Entries entries;
    std::istringstream lines(content);
    std::string title;
    for (std::string line; std::getline(lines, line);) {
        line = trimmed(line);
        if (line.starts_with(kInfo)) {
            const std::size_t comma = line.find(',');
            title = comma != std::string::npos ? trimmed(std::string_view(line).substr(comma + 1)) : "";
        } else if (!line.empty() && line.front() != '#') {
            add(entries, line, title);
            title.clear();
        }
    }
    return entries;
}

Entries parsePls(const std::string& content)
{
    std::map<int, PlaylistEntry> numbered;
    std::istringstream lines(content);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos) {
            continue;
        }
        const std::string key = lowerCase(trimmed(line.substr(0, equals)));
        const std::string value = trimmed(std::string_view(line).substr(equals + 1));
        if (key.starts_with("file")) {
            numbered[std::atoi(key.c_str() + 4)].target = value;
        } else if (key.starts_with("title")) {
            numbered[std::atoi(key.c_str() + 5)].title = value;
        }
    }
    Entries entries;
    for (const auto& [number, entry] : numbered) {
        add(entries, entry.target, entry.title);
    }
    return entries;
}

// The files of the disc; its tracks are parts of them.
Entries parseCue(const std::string& content)
{
    Entries entries;
    std::istringstream lines(content);
    for (std::string line; std::getline(lines, line);) {
        line = trimmed(line);
        if (lowerCase(line.substr(0, 5)) != "file ") {
            continue;
        }
        const std::string rest = trimmed(line.substr(5));
        const bool quoted = rest.starts_with("\"");
        const std::size_t end = quoted ? rest.find('"', 1) : rest.rfind(' '); // the kind of file comes last
        add(entries, quoted ? rest.substr(1, end - 1) : rest.substr(0, end), "");
    }
    return entries;
}

/// The elements of an XSPF playlist as they are read.
struct Xspf {
    Entries entries;
    std::string location;
    std::string title;
    bool inTrack = false;
    std::string* text = nullptr; ///< where the text of the current element goes

    static void begin(void* data, const XML_Char* element, const XML_Char** /*attributes*/)
    {
        auto& self = *static_cast<Xspf*>(data);
        const std::string name = element;
        if (name == "track") {
            self.inTrack = true;
            self.location.clear();
            self.title.clear();
        }
        if (self.inTrack && name == "title") {
            self.text = &self.title;
        } else if (self.inTrack && name == "location" && self.location.empty()) { // the first one is the best
            self.text = &self.location;
        }
    }
    static void end(void* data, const XML_Char* element)
    {
        auto& self = *static_cast<Xspf*>(data);
        self.text = nullptr;
        if (std::string_view(element) == "track") {
            self.inTrack = false;
            const std::string location = trimmed(self.location);
            add(self.entries, hasScheme(location) ? location : withoutEscapes(location), trimmed(self.title));
        }
    }
    static void gather(void* data, const XML_Char* text, int length)
    {
        auto& self = *static_cast<Xspf*>(data);
        if (self.text != nullptr) {
            self.text->append(text, static_cast<std::size_t>(length));
        }
    }
};

Entries parseXspf(const std::string& content)
{
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreate(nullptr), &XML_ParserFree);
    Xspf xspf;
    XML_SetUserData(parser.get(), &xspf);
    XML_SetElementHandler(parser.get(), &Xspf::begin, &Xspf::end);
    XML_SetCharacterDataHandler(parser.get(), &Xspf::gather);
    // What comes before a fault is still good.
    XML_Parse(parser.get(), content.data(), static_cast<int>(content.size()), XML_TRUE);
    return std::move(xspf.entries);
}

using Parser = Entries (*)(const std::string& content);

struct Format {
    const char* extension;
    Parser parser;
};

constexpr Format kParsers[] = {
    {"m3u", &parseM3u}, {"m3u8", &parseM3u}, {"pls", &parsePls}, {"xspf", &parseXspf}, {"cue", &parseCue}};

Parser parserOf(std::string_view name)
{
    const std::size_t dot = name.rfind('.');
    const std::string extension = dot == std::string_view::npos ? "" : lowerCase(name.substr(dot + 1));
    const auto* const found = std::find_if(std::begin(kParsers), std::end(kParsers),
                                           [&extension](const Format& format) { return extension == format.extension; });
    return found != std::end(kParsers) ? found->parser : nullptr;
}

// One program wrote them all in one charset.
void readTexts(Entries& entries)
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
        entry.title = read(entry.title);
    }
}

} // namespace

bool isPlaylistName(std::string_view name)
{
    return parserOf(name) != nullptr;
}

std::vector<PlaylistEntry> parsePlaylist(std::string_view name, std::string content)
{
    const Parser parser = parserOf(name);
    if (parser == nullptr) {
        return {};
    }
    Entries entries = parser(withoutMark(std::move(content)));
    readTexts(entries);
    return entries;
}

} // namespace desktop
