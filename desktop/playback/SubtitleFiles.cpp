#include "desktop/playback/SubtitleFiles.h"

#include "desktop/files/MediaTypes.h"
#include "desktop/text/AsciiText.h"
#include "desktop/text/FoldedText.h"
#include "desktop/text/LanguageCodes.h"
#include "desktop/text/NameEncoding.h"
#include "desktop/text/NaturalOrder.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <string_view>

namespace desktop {

namespace {

constexpr std::size_t kMostFiles = 32;

constexpr std::array<std::string_view, 7> kExtensions = {"srt", "ass", "ssa", "vtt", "sub", "idx", "txt"};
constexpr std::array<std::string_view, 8> kKinds = {"forced", "full",  "default", "sdh",
                                                    "cc",     "signs", "songs",   "commentary"};

template <std::size_t count>
bool contains(const std::array<std::string_view, count>& texts, std::string_view text)
{
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

// The language that the words @p words, a dot before each, of a file's name tell, which may be none; nothing when there are
// others than such a file has.
std::optional<std::string> languageAmong(std::string_view words)
{
    std::string language;
    while (!words.empty()) {
        const std::size_t end = std::min(words.find('.', 1), words.size());
        const std::string_view word = words.substr(1, end - 1);
        const std::string code = contains(kKinds, lowerCase(word)) ? "" : languageCode(word);
        if (words.front() != '.' || (code.empty() && !contains(kKinds, lowerCase(word)))) {
            return std::nullopt;
        }
        language = language.empty() ? code : language; // "en.hi": for those who hear little, and no Hindi
        words.remove_prefix(end);
    }
    return language;
}

// As languageAmong, of file @p name beside the video whose name without extension is, folded, @p video.
std::optional<std::string> languageBeside(const std::string& name, const std::string& video)
{
    const std::string extension = extensionOf(name);
    const std::string stem = contains(kExtensions, extension) ? foldedText(nameWithoutExtension(name)) : "";
    if (stem.empty() || !stem.starts_with(video) || (extension == "txt" && stem != video)) {
        return std::nullopt;
    }
    return languageAmong(std::string_view(stem).substr(video.size()));
}

// Makes one of an .idx file and its .sub file, and leaves out .idx files without one.
void pairPictures(std::vector<SubtitleFileName>& files)
{
    std::map<std::string, std::string> pictures; // .sub files by their folded names without extension
    for (const SubtitleFileName& file : files) {
        if (extensionOf(file.name) == "sub") {
            pictures.emplace(foldedText(nameWithoutExtension(file.name)), file.name);
        }
    }
    std::set<std::string> leftOut;
    for (SubtitleFileName& file : files) {
        if (extensionOf(file.name) == "idx") {
            const auto found = pictures.find(foldedText(nameWithoutExtension(file.name)));
            file.pictures = found != pictures.end() ? found->second : "";
            leftOut.insert(file.pictures.empty() ? file.name : file.pictures);
        }
    }
    std::erase_if(files, [&](const SubtitleFileName& file) { return leftOut.contains(file.name); });
}

} // namespace

std::vector<SubtitleFileName> subtitleFilesOf(const std::string& video, const std::vector<std::string>& names)
{
    const std::string wanted = foldedText(nameWithoutExtension(video));
    std::vector<SubtitleFileName> files;
    for (const std::string& name : names) {
        if (const std::optional<std::string> language = languageBeside(name, wanted)) {
            files.push_back({name, *language, ""});
        }
    }
    pairPictures(files);
    sortNaturally(files, [](const SubtitleFileName& file) { return encodeName(file.name); });
    files.resize(std::min(files.size(), kMostFiles));
    return files;
}

} // namespace desktop
