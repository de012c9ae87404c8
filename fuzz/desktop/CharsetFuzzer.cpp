#include "desktop/text/LegacyText.h"
#include "desktop/text/Utf8.h"

#include "fuzz/desktop/Fuzzing.h"

using namespace desktop;

// Texts of any bytes: their charset is one that can be read.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string sample = inputOf(data, size);
    const char* const charset = guessCharset(sample);
    expect(charset != nullptr && toUtf8("Az 09", charset) == "Az 09", "a guessed charset is a known one");
    const std::string text = toUtf8(sample, charset);
    expect(isUtf8(text), "what has been read is UTF-8");
    expect(text.empty() == sample.empty(), "no text is lost");
    return 0;
}
