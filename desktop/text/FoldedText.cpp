#include "desktop/text/FoldedText.h"

#include "desktop/text/Utf8.h"

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

namespace desktop {

std::string foldedText(std::string_view text)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const decomposed = icu::Normalizer2::getNFDInstance(status);
    const icu::Normalizer2* const composed = icu::Normalizer2::getNFCInstance(status);
    if (U_FAILURE(status) || !isUtf8(text)) {
        return std::string(text);
    }
    const auto characters = icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
    // Folded when it is decomposed: some marks change their place with the case of their letter.
    icu::UnicodeString folded = decomposed->normalize(characters, status).foldCase();
    folded = composed->normalize(folded, status);
    std::string utf8;
    return U_SUCCESS(status) ? folded.toUTF8String(utf8) : std::string(text);
}

} // namespace desktop
