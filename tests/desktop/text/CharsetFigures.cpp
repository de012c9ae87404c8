// Prints how many titles of each language are read as they were meant, by the desktop and by ICU's detector, as a table.
// tools/charsets writes it into the documentation.

#include "desktop/text/LegacyText.h"

#include "tests/desktop/support/Titles.h"

#include <unicode/ucsdet.h>

#include <cstdio>
#include <memory>

namespace {

std::string readByDesktop(const std::string& bytes)
{
    return desktop::toUtf8(bytes, desktop::guessCharset(bytes));
}

std::string readByIcu(const std::string& bytes)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UCharsetDetector, decltype(&ucsdet_close)> detector(ucsdet_open(&status), &ucsdet_close);
    ucsdet_setText(detector.get(), bytes.data(), static_cast<std::int32_t>(bytes.size()), &status);
    const UCharsetMatch* const match = ucsdet_detect(detector.get(), &status);
    const char* const name = match != nullptr ? ucsdet_getName(match, &status) : nullptr;
    return name != nullptr && U_SUCCESS(status) ? desktop::toUtf8(bytes, name) : "";
}

} // namespace

int main()
{
    std::puts("| language | charset | a title: desktop | ICU | ten titles: desktop | ICU |\n|---|---|---|---|---|---|");
    for (const testsupport::TitleLanguage& language : testsupport::readTitles(TITLES)) {
        const testsupport::ReadShare ours = shareRead(language, &readByDesktop);
        const testsupport::ReadShare icu = shareRead(language, &readByIcu);
        std::printf("| %s | %s | %.0f %% | %.0f %% | %.0f %% | %.0f %% |\n", language.name.c_str(), language.charset.c_str(),
                    ours.single, icu.single, ours.album, icu.album);
    }
    return 0;
}
