#include "desktop/text/NameEncoding.h"
#include "desktop/text/Normalization.h"
#include "desktop/text/Utf8.h"

#include "fuzz/desktop/Fuzzing.h"

#include <algorithm>

using namespace desktop;

// Names of any bytes: their text can be shown and leads back to them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string name = inputOf(data, size);
    const std::string text = encodeName(name);
    expect(isUtf8(text), "an encoded name is UTF-8");
    expect(decodeName(text) == name, "an encoded name leads back to its bytes");
    expect(std::count(text.begin(), text.end(), '/') == std::count(name.begin(), name.end(), '/'), "a path keeps its parts");
    expect(!isUtf8(name) || escapeBadBytes(name) == name, "only bad bytes are escaped");
    decodeName(name); // whatever a request says
    expect(isUtf8(composed(name)) && isUtf8(decomposed(name)), "a text in another form is UTF-8");
    expect(composed(decomposed(name)) == composed(name), "both forms are of one text");
    return 0;
}
