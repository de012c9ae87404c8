#include "desktop/text/LatinCharset.h"

#include "desktop/text/LegacyText.h"
#include "desktop/text/LetterPairs.h"
#include "desktop/text/Utf8.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <limits>
#include <string_view>
#include <vector>

namespace desktop {

namespace {

// How unlikely a text is in a language, in bits.
constexpr int kStrangeLetter = 18;    // one that the language does not have
constexpr int kNeighboursLetter = 14; // one of another western language: names cross those borders
constexpr int kSign = 3;              // such as a degree
constexpr int kSignInWord = 14;
constexpr int kNoCharacter = 1000;
constexpr int kCapitalInWord = 10;
constexpr int kOtherLanguage = 8; // than that of most lines

constexpr char kWestern[] = "windows-1252";
constexpr int kDoubt = 5;       // bits by which another charset must be likelier than Windows-1252
constexpr int kRareCharset = 4; // bits

struct Candidate {
    const char* charset;
    LatinGroup group;
    int bits; ///< how much rarer it is
};

constexpr Candidate kOthers[] = {{"windows-1250", LatinGroup::Central, kDoubt},
                                 {"iso-8859-2", LatinGroup::Central, kDoubt + kRareCharset},
                                 {"windows-1254", LatinGroup::Turkish, kDoubt}};

char32_t lower(char32_t c)
{
    return static_cast<char32_t>(u_tolower(static_cast<UChar32>(c)));
}

bool isLetter(char32_t c)
{
    return u_isalpha(static_cast<UChar32>(c)) != 0 && c != U'ª' && c != U'º';
}

/// How unlikely texts are in one language.
class Language {
public:
    explicit Language(const LetterPairs& pairs)
        : m_pairs(pairs)
        , m_letters(pairs.letters)
    {
    }

    int bitsOf(std::u32string_view text) const
    {
        int bits = 0;
        std::size_t before = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (isLetter(text[i])) {
                const std::size_t symbol = symbolOf(lower(text[i]));
                const bool within = i > 0 && u_islower(static_cast<UChar32>(text[i - 1]));
                bits += symbol != 0 ? pair(before, symbol) : strangeness(lower(text[i]));
                bits += within && u_isupper(static_cast<UChar32>(text[i])) ? kCapitalInWord : 0;
                before = symbol;
            } else {
                bits += (before != 0 ? pair(before, 0) : 0) + signBits(text, i);
                before = 0;
            }
        }
        return bits + (before != 0 ? pair(before, 0) : 0);
    }

private:
    static constexpr std::size_t kPlain = 26; // letters

    // 0 for a letter that the language does not have.
    std::size_t symbolOf(char32_t c) const
    {
        if (c >= U'a' && c <= U'z') {
            return c - U'a' + 1;
        }
        const std::size_t found = m_letters.find(c);
        return found != std::u32string_view::npos ? 1 + kPlain + found : 0;
    }

    int pair(std::size_t first, std::size_t second) const
    {
        const char digit = m_pairs.bits[first * (1 + kPlain + m_letters.size()) + second];
        return digit <= '9' ? digit - '0' : digit - 'A' + 10;
    }

    int strangeness(char32_t c) const
    {
        if (m_pairs.group != LatinGroup::Western) {
            return kStrangeLetter;
        }
        const bool isNear = std::any_of(std::begin(kLetterPairs), std::end(kLetterPairs), [c](const LetterPairs& other) {
            return other.group == LatinGroup::Western &&
                   std::u32string_view(other.letters).find(c) != std::u32string_view::npos;
        });
        return isNear ? kNeighboursLetter : kStrangeLetter;
    }

    static int signBits(std::u32string_view text, std::size_t i)
    {
        const auto c = static_cast<UChar32>(text[i]);
        if (text[i] <= 0x7F || u_ispunct(c) || u_isspace(c)) {
            return 0;
        }
        if (text[i] == 0xFFFD || u_iscntrl(c)) {
            return kNoCharacter;
        }
        const bool inWord = (i > 0 && isLetter(text[i - 1])) || (i + 1 < text.size() && isLetter(text[i + 1]));
        return inWord ? kSignInWord : kSign;
    }

    const LetterPairs& m_pairs;
    std::u32string_view m_letters;
};

// The lines of @p text that are not of ASCII alone, which say nothing.
std::vector<std::u32string_view> speakingLines(std::u32string_view text)
{
    std::vector<std::u32string_view> lines;
    while (!text.empty()) {
        const std::u32string_view line = text.substr(0, text.find(U'\n'));
        if (std::any_of(line.begin(), line.end(), [](char32_t c) { return c > 0x7F; })) {
            lines.push_back(line);
        }
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return lines;
}

// In the language of the group that suits best; single lines may be of others.
int bitsOf(std::u32string_view text, LatinGroup group)
{
    const std::vector<std::u32string_view> lines = speakingLines(text);
    std::vector<std::vector<int>> languages;
    std::vector<int> least(lines.size(), std::numeric_limits<int>::max());
    for (const LetterPairs& pairs : kLetterPairs) {
        if (pairs.group == group) {
            std::vector<int>& bits = languages.emplace_back();
            for (std::size_t i = 0; i < lines.size(); ++i) {
                bits.push_back(Language(pairs).bitsOf(lines[i]));
                least[i] = std::min(least[i], bits[i]);
            }
        }
    }
    int bits = std::numeric_limits<int>::max();
    for (const std::vector<int>& language : languages) {
        int sum = 0;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            sum += std::min(language[i], least[i] + kOtherLanguage);
        }
        bits = std::min(bits, sum);
    }
    return bits;
}

} // namespace

const char* guessLatinCharset(const std::string& sample)
{
    const std::u32string western = charactersOf(toUtf8(sample, kWestern));
    int least = bitsOf(western, LatinGroup::Western);
    const char* likeliest = kWestern;
    for (const Candidate& candidate : kOthers) {
        const std::u32string text = charactersOf(toUtf8(sample, candidate.charset));
        const bool same = text == western; // its letters are in both
        const int bits = bitsOf(text, candidate.group) + (same ? 0 : candidate.bits);
        if (bits < least) {
            least = bits;
            likeliest = same ? kWestern : candidate.charset;
        }
    }
    return likeliest;
}

} // namespace desktop
