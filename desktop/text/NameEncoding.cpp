#include "desktop/text/NameEncoding.h"

#include "desktop/text/Utf8.h"

namespace desktop {

namespace {

constexpr std::size_t kFormLength = 4; // \xHH
constexpr char kDigits[] = "0123456789ABCDEF";

int digitValue(char digit)
{
    const std::string_view digits(kDigits);
    const auto found = digits.find(digit);
    return found == std::string_view::npos ? -1 : static_cast<int>(found);
}

bool startsWithForm(std::string_view text)
{
    return text.size() >= kFormLength && text[0] == '\\' && text[1] == 'x' && digitValue(text[2]) >= 0 &&
           digitValue(text[3]) >= 0;
}

void appendForm(std::string& out, std::string_view prefix, unsigned char byte)
{
    out.append(prefix).append({kDigits[byte >> 4], kDigits[byte & 0x0F]});
}

} // namespace

std::string escapeBadBytes(std::string_view text, std::string_view prefix)
{
    std::string out;
    out.reserve(text.size());
    std::size_t good = 0; // bytes at the front that are known to be characters
    while (good < text.size()) {
        const std::size_t length = firstCharacter(text.substr(good)).length;
        good += length;
        if (length == 0) {
            out.append(text.substr(0, good));
            appendForm(out, prefix, static_cast<unsigned char>(text[good]));
            text.remove_prefix(good + 1);
            good = 0;
        }
    }
    return out.append(text);
}

std::string encodeName(std::string_view bytes)
{
    std::string out;
    out.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (startsWithForm(bytes.substr(i))) {
            appendForm(out, "\\x", '\\');
        } else {
            out.push_back(bytes[i]);
        }
    }
    return escapeBadBytes(out);
}

std::string decodeName(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (startsWithForm(text.substr(i))) {
            out.push_back(static_cast<char>(digitValue(text[i + 2]) * 16 + digitValue(text[i + 3])));
            i += kFormLength - 1;
        } else {
            out.push_back(text[i]);
        }
    }
    return out;
}

} // namespace desktop
