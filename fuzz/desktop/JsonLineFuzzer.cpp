#include "desktop/cli/JsonLines.h"
#include "desktop/text/Utf8.h"

#include "fuzz/desktop/Fuzzing.h"

#include <algorithm>

using namespace desktop;

namespace {

// Whether all strings of @p value are UTF-8; half a pair of surrogates is none.
bool holdsTexts(const Json::Value& value)
{
    const Json::Value::Members names = value.isObject() ? value.getMemberNames() : Json::Value::Members();
    return (!value.isString() || isUtf8(value.asString())) && std::all_of(names.begin(), names.end(), isUtf8) &&
           std::all_of(value.begin(), value.end(), holdsTexts);
}

} // namespace

// Lines of any bytes: what is read of one, and written, reads the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string line = inputOf(data, size);
    Json::Value object;
    JsonError error;
    if (!parseJsonLine(line, object, error)) {
        expect(!error.reason.empty(), "a refused line has a reason");
        expect(isUtf8(jsonLine(error.reason)), "the reason can be written");
        return 0;
    }
    const std::string written = jsonLine(object);
    expect(isUtf8(written), "a line is UTF-8");
    expect(written.find('\n') == written.size() - 1, "a line is one line");
    if (!holdsTexts(object)) { // bad bytes have been replaced, in names too, which may then be equal
        return 0;
    }
    Json::Value again;
    expect(parseJsonLine(written, again, error), "a written line can be read");
    expect(again == object, "it reads the same");
    expect(jsonLine(again) == written, "it is written the same again");
    return 0;
}
