#include "desktop/playback/SubtitleFiles.h"

#include "desktop/files/MediaTypes.h"
#include "desktop/text/AsciiText.h"
#include "desktop/text/FoldedText.h"
#include "desktop/text/LanguageCodes.h"
#include "desktop/text/NameEncoding.h"
#include "desktop/text/NaturalOrder.h"

#include <algorithm>
#include <array>
#include <cstdlib>
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
constexpr std::array<std::string_view, 4> kNotTheWholeText = {"forced", "signs", "songs", "commentary"};

template <std::size_t count>
bool contains(const std::array<std::string_view, count>& texts, std::string_view text)
{
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

/// What stands between the video's name and the extension of a file's name.
struct Words {
    std::string language; ///< may be empty
    bool none = true;
    bool isWholeText = true; ///< all that is spoken, and nothing else
};

// What the words @p words, a dot before each, of a file's name tell; nothing when there are others than such a file has.
std::optional<Words> readWords(std::string_view words)
{
    Words read;
    read.none = words.empty();
    while (!words.empty()) {
        const std::size_t end = std::min(words.find('.', 1), words.size());
        const std::string word = lowerCase(words.substr(1, end - 1));
        const std::string code = contains(kKinds, word) ? "" : languageCode(word);
        if (words.front() != '.' || (code.empty() && !contains(kKinds, word))) {
            return std::nullopt;
        }
        read.language = read.language.empty() ? code : read.language; // "en.hi": for those who hear little, and no Hindi
        read.isWholeText = read.isWholeText && !contains(kNotTheWholeText, word);
        words.remove_prefix(end);
    }
    return read;
}

// As readWords, of file @p name beside the video whose name without extension is, folded, @p video.
std::optional<Words> wordsBeside(const std::string& name, const std::string& video)
{
    const std::string extension = extensionOf(name);
    const std::string stem = contains(kExtensions, extension) ? foldedText(nameWithoutExtension(name)) : "";
    if (stem.empty() || !stem.starts_with(video) || (extension == "txt" && stem != video)) {
        return std::nullopt;
    }
    return readWords(std::string_view(stem).substr(video.size()));
}

// The lower, the sooner the file is shown.
int rankOf(const Words& words, const std::string& language)
{
    const bool isUsers = !language.empty() && words.language == language;
    if (!words.isWholeText) {
        return isUsers ? 3 : 4;
    }
    return words.none ? 0 : (isUsers ? 1 : 2);
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

std::vector<SubtitleFileName> subtitleFilesOf(const std::string& video, const std::vector<std::string>& names,
                                              const std::string& language)
{
    const std::string wanted = foldedText(nameWithoutExtension(video));
    std::vector<SubtitleFileName> files;
    std::map<std::string, int> ranks;
    for (const std::string& name : names) {
        if (const std::optional<Words> words = wordsBeside(name, wanted)) {
            files.push_back({name, words->language, ""});
            ranks[name] = rankOf(*words, language);
        }
    }
    pairPictures(files);
    sortNaturally(files, [](const SubtitleFileName& file) { return encodeName(file.name); });
    std::stable_sort(files.begin(), files.end(), [&ranks](const SubtitleFileName& one, const SubtitleFileName& other) {
        return ranks[one.name] < ranks[other.name];
    });
    files.resize(std::min(files.size(), kMostFiles));
    return files;
}

std::string userLanguage()
{
    for (const char* const variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* const locale = std::getenv(variable);
        if (locale != nullptr && *locale != '\0') {
            const std::string_view name = locale;
            return languageCode(name.substr(0, name.find_first_of(".@")));
        }
    }
    return "";
}

} // namespace desktop
