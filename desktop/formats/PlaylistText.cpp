#include "desktop/formats/PlaylistText.h"

#include "desktop/text/AsciiText.h"
#include "desktop/text/LegacyText.h"
#include "desktop/text/UriText.h"

#include <algorithm>

namespace desktop {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The charset that an XML declaration names; empty when there is none.
std::string declaredCharset(std::string_view content)
{
    constexpr std::string_view kName = "encoding";
    const std::string_view head = content.substr(0, content.starts_with("<?xml") ? content.find("?>") : 0);
    const std::size_t name = head.find(kName);
    const std::size_t open = head.find_first_of("\"'", name);
    if (name == std::string_view::npos || open == std::string_view::npos) {
        return "";
    }
    const std::size_t close = head.find(head[open], open + 1);
    return close != std::string_view::npos ? lowerCase(head.substr(open + 1, close - open - 1)) : "";
}

// The path of the file's URI whose part behind the scheme is @p rest; the host before it does not matter.
std::string pathOfFileUri(std::string_view rest)
{
    const std::size_t path = rest.starts_with("//") ? rest.find_first_of("/\\", 2) : 0;
    return path != std::string_view::npos ? withoutEscapes(rest.substr(path)) : "";
}

} // namespace

std::string withoutMark(std::string content)
{
    if (content.starts_with(kByteOrderMark)) {
        return content.substr(kByteOrderMark.size());
    }
    const bool wide = content.starts_with("\xFF\xFE") || content.starts_with("\xFE\xFF");
    return wide ? toUtf8(content, "UTF-16") : content;
}

std::string xmlText(std::string content)
{
    content = withoutMark(std::move(content));
    const std::string charset = declaredCharset(content);
    if (charset.empty() || charset.starts_with("utf-")) { // what is UTF-16 in truth has been recognised by its mark
        return content;
    }
    std::string text = toUtf8(content, charset.c_str());
    return text.empty() ? content : text;
}

std::vector<std::string> linesOf(std::string_view content)
{
    std::vector<std::string> lines;
    while (!content.empty()) {
        const std::size_t end = std::min(content.find_first_of("\r\n"), content.size());
        lines.push_back(trimmed(content.substr(0, end)));
        content.remove_prefix(std::min(end + 1, content.size()));
    }
    return lines;
}

void addEntry(PlaylistEntries& entries, const std::string& target, const std::string& title)
{
    constexpr std::string_view kScheme = "file:";
    const bool isFileUri = lowerCase(target.substr(0, kScheme.size() + 1)) == "file:/";
    std::string path = isFileUri ? pathOfFileUri(std::string_view(target).substr(kScheme.size())) : target;
    if (!path.empty() && (isFileUri || !hasScheme(path))) {
        entries.push_back({std::move(path), "", title});
    }
}

} // namespace desktop
