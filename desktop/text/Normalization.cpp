#include "desktop/text/Normalization.h"

#include "desktop/text/Utf8.h"

#include <unicode/normalizer2.h>

namespace desktop {

namespace {

using FormGetter = const icu::Normalizer2* (*)(UErrorCode& status);

std::string normalized(const std::string& text, FormGetter form)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const normalizer = form(status);
    if (U_FAILURE(status) || !isUtf8(text)) {
        return "";
    }
    std::string result;
    return normalizer->normalize(icu::UnicodeString::fromUTF8(text), status).toUTF8String(result);
}

} // namespace

std::string composed(const std::string& text)
{
    return normalized(text, &icu::Normalizer2::getNFCInstance);
}

std::string decomposed(const std::string& text)
{
    return normalized(text, &icu::Normalizer2::getNFDInstance);
}

} // namespace desktop
