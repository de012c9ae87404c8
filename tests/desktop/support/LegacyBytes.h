#pragma once

#include <unicode/ucnv.h>

#include <string>

namespace testsupport {

/// The UTF-8 text @p text as a program of old wrote it in @p charset.
inline std::string writtenIn(const std::string& text, const char* charset)
{
    std::string bytes(text.size() * 2 + 4, '\0');
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = ucnv_convert(charset, "UTF-8", bytes.data(), static_cast<int32_t>(bytes.size()), text.data(),
                                        static_cast<int32_t>(text.size()), &status);
    bytes.resize(U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0);
    return bytes;
}

} // namespace testsupport
