#include "desktop/text/LanguageCodes.h"

#include "desktop/text/AsciiText.h"
#include "desktop/text/FoldedText.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <unordered_map>

namespace desktop {

namespace {

using CodesByName = std::unordered_map<std::string, std::string>; // the names are folded

constexpr std::size_t kShortestPart = 2; // characters of a part of "pt-BR"
constexpr std::size_t kLongestPart = 8;
constexpr std::size_t kLongestCode = 3;

std::string nameOf(const icu::Locale& language, const icu::Locale& in)
{
    icu::UnicodeString name;
    language.getDisplayLanguage(in, name);
    std::string text;
    return foldedText(name.toUTF8String(text));
}

CodesByName allNames()
{
    CodesByName codes;
    const char* const* languages = icu::Locale::getISOLanguages();
    for (const char* const* code = languages; *code != nullptr; ++code) {
        codes.emplace(nameOf(icu::Locale(*code), icu::Locale::getEnglish()), *code);
    }
    for (const char* const* code = languages; *code != nullptr; ++code) { // an English name goes before
        codes.emplace(nameOf(icu::Locale(*code), icu::Locale(*code)), *code);
    }
    return codes;
}

bool isLetterOrDigit(char character)
{
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'z');
}

// Whether @p text is like "en", "pt-br" or "zh-hans-cn".
bool isTag(std::string_view text)
{
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find('-', begin), text.size());
        const std::string_view part = text.substr(begin, end - begin);
        const std::size_t longest = begin == 0 ? kLongestCode : kLongestPart;
        if (part.size() < kShortestPart || part.size() > longest ||
            !std::all_of(part.begin(), part.end(), isLetterOrDigit)) {
            return false;
        }
        begin = end + 1;
    }
    return true;
}

// As languageCode, of codes only.
std::string codeOfTag(std::string tag)
{
    std::replace(tag.begin(), tag.end(), '_', '-');
    if (!isTag(tag)) {
        return "";
    }
    // ICU knows that "ger" is "de", too; a code that it does not know has no code of three letters.
    const icu::Locale locale = icu::Locale::createCanonical(tag.substr(0, tag.find('-')).c_str());
    return *locale.getISO3Language() != '\0' ? locale.getLanguage() : "";
}

} // namespace

std::string languageCode(std::string_view text)
{
    std::string code = codeOfTag(lowerCase(text));
    if (!code.empty()) {
        return code;
    }
    static const CodesByName codes = allNames();
    const auto found = codes.find(foldedText(text));
    return found != codes.end() ? found->second : "";
}

} // namespace desktop
