#include "desktop/text/LegacyText.h"

#include "desktop/text/LatinCharset.h"
#include "desktop/text/Utf8.h"

#include <uchardet/uchardet.h>
#include <unicode/uchar.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <memory>
#include <string_view>

namespace desktop {

namespace {

constexpr char kWestern[] = "windows-1252";
constexpr int kMaxAdjoining = 3;                // letters with marks that a western word has side by side
constexpr std::size_t kMaxSample = 64UL * 1024; // bytes; more says no more
constexpr int kRepetitions = 3; // the detector wants more than a title; the same again does not change what it weighs

// The letters beyond ASCII of one language a line: text of another charset, read as western, seldom keeps to one of them.
constexpr const char32_t* kAlphabets[] = {
    U"àâæçéèêëîïôœùûüÿ", // French
    U"äöüßéà",           // German
    U"áéíñóúüªº",        // Spanish
    U"áâãàçéêíóôõúüªº",  // Portuguese
    U"àèéìíîòóùúªº",     // Italian
    U"àçèéíïòóúü",       // Catalan
    U"äëïöüáéíóúèê",     // Dutch
    U"åäöéàüšž",         // Swedish, Finnish
    U"åæøéèêóòôâüäö",    // Danish, Norwegian
    U"áæðéíóöþúý",       // Icelandic
};

struct Charset {
    const char* detected; ///< as the detector calls it
    const char* name;     ///< as the converter calls it, or what those computers had that wrote the like of it
    bool isLatin = false; ///< what is read in it still looks like a language of Latin letters
};

constexpr Charset kCharsets[] = {
    {"ISO-8859-13", "windows-1257", true},
    {"WINDOWS-1258", "windows-1258", true},
    {"WINDOWS-1251", "windows-1251"},
    {"MAC-CYRILLIC", "windows-1251"},
    {"KOI8-R", "koi8-r"},
    {"IBM866", "ibm-866"},
    {"ISO-8859-5", "iso-8859-5"},
    {"WINDOWS-1253", "windows-1253"},
    {"ISO-8859-7", "iso-8859-7"},
    {"WINDOWS-1255", "windows-1255"},
    {"WINDOWS-1256", "windows-1256"},
    {"ISO-8859-6", "windows-1256"},
    {"TIS-620", "windows-874"},
    {"SHIFT_JIS", "shift_jis"},
    {"EUC-JP", "euc-jp"},
    {"GB18030", "gb18030"},
    {"BIG5", "big5"},
    {"UHC", "windows-949"},
};

bool isLetter(char32_t c)
{
    return u_isalpha(static_cast<UChar32>(c)) != 0;
}

bool isBeyondAscii(char32_t c)
{
    return c > 0x7F;
}

// A quotation mark that opens stands at the beginning of a word.
bool opensWithin(const std::u32string& text, std::size_t i)
{
    const auto before = static_cast<UChar32>(i > 0 ? text[i - 1] : U' ');
    return (text[i] == U'‚' || text[i] == U'„') && !u_isspace(before) && !u_ispunct(before);
}

// Whether more letters with marks or signs stand side by side than in any western word, or a sign stands in a word.
bool hasStrangeWords(const std::u32string& text)
{
    int adjoining = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<UChar32>(text[i]);
        const bool counts = isBeyondAscii(text[i]) && !u_ispunct(c) && !u_isspace(c);
        adjoining = counts ? adjoining + 1 : 0;
        const bool inWord = i > 0 && i + 1 < text.size() && isLetter(text[i - 1]) && isLetter(text[i + 1]);
        if (adjoining > kMaxAdjoining || opensWithin(text, i) || (counts && !isLetter(text[i]) && inWord)) {
            return true;
        }
    }
    return false;
}

bool isWestern(const std::u32string& text)
{
    const auto keepsTo = [&text](std::u32string_view alphabet) {
        return std::all_of(text.begin(), text.end(), [alphabet](char32_t c) {
            const auto lower = static_cast<char32_t>(u_tolower(static_cast<UChar32>(c)));
            return !isBeyondAscii(c) || !isLetter(c) || alphabet.find(lower) != std::u32string_view::npos;
        });
    };
    return !hasStrangeWords(text) && std::any_of(std::begin(kAlphabets), std::end(kAlphabets), keepsTo);
}

// Tags of one file may be of several languages.
bool isWesternLineByLine(const std::u32string& text)
{
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(U'\n', begin), text.size());
        if (!isWestern(text.substr(begin, end - begin))) {
            return false;
        }
        begin = end + 1;
    }
    return true;
}

bool meansNothing(char32_t c)
{
    const bool isFrame = c >= 0x2500 && c <= 0x259F; // of tables on old screens
    return isFrame || c == 0xFFFD ||
           (isBeyondAscii(c) && (u_iscntrl(static_cast<UChar32>(c)) || !u_isdefined(static_cast<UChar32>(c))));
}

// Of one alphabet and the other: Greek, Cyrillic, Hebrew and Arabic letters are never within a Latin word.
bool areOfTwoAlphabets(char32_t a, char32_t b)
{
    const auto isOther = [](char32_t c) { return c >= 0x370 && c <= 0x6FF && isLetter(c); };
    return (isLetter(a) && a < 0x250 && isOther(b)) || (isLetter(b) && b < 0x250 && isOther(a));
}

// What is read in a wrong charset has characters that nobody writes, or capitals or letters of another alphabet within
// words.
bool isPlausible(const std::u32string& text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char32_t before = i > 0 ? text[i - 1] : U' ';
        const bool capitalWithin =
            isBeyondAscii(text[i]) && u_isupper(static_cast<UChar32>(text[i])) && u_islower(static_cast<UChar32>(before));
        if (meansNothing(text[i]) || capitalWithin || areOfTwoAlphabets(before, text[i])) {
            return false;
        }
    }
    return true;
}

struct DeleteDetector {
    void operator()(uchardet_t detector) const { uchardet_delete(detector); }
};

// Null when it is none of ours.
const Charset* detect(const std::string& sample)
{
    const std::unique_ptr<uchardet, DeleteDetector> detector(uchardet_new());
    const std::string line = sample + '\n';
    for (int i = 0; i < kRepetitions; ++i) {
        if (uchardet_handle_data(detector.get(), line.data(), line.size()) != 0) {
            return nullptr;
        }
    }
    uchardet_data_end(detector.get());
    const std::string_view name = uchardet_get_charset(detector.get());
    const auto* const found = std::find_if(std::begin(kCharsets), std::end(kCharsets),
                                           [name](const Charset& charset) { return name == charset.detected; });
    return found != std::end(kCharsets) ? found : nullptr;
}

// As much of @p texts as tells its charset. No charset has a blank or a line end within a character.
std::string beginningOf(const std::string& texts)
{
    const std::size_t end = texts.size() > kMaxSample ? texts.find_last_of(" \n", kMaxSample) : std::string::npos;
    return texts.substr(0, end != std::string::npos ? end : kMaxSample);
}

} // namespace

const char* guessCharset(const std::string& texts)
{
    const std::string sample = beginningOf(texts);
    const std::u32string western = charactersOf(toUtf8(sample, kWestern));
    const Charset* const charset = isWestern(western) ? nullptr : detect(sample);
    const bool plausible = charset != nullptr && isPlausible(charactersOf(toUtf8(sample, charset->name)));
    if (plausible && !charset->isLatin) {
        return charset->name;
    }
    const char* const latin = guessLatinCharset(sample);
    const bool speaksForIt = plausible && std::string_view(latin) == kWestern && !isWesternLineByLine(western);
    return speaksForIt ? charset->name : latin;
}

std::string toUtf8(const std::string& bytes, const char* charset)
{
    std::string text(bytes.size() * 3 + 4, '\0'); // no charset in question needs more
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = ucnv_convert("UTF-8", charset, text.data(), static_cast<int32_t>(text.size()), bytes.data(),
                                        static_cast<int32_t>(bytes.size()), &status);
    text.resize(U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0);
    return text;
}

} // namespace desktop
