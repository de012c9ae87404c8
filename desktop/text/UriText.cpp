#include "desktop/text/UriText.h"

#include <algorithm>
#include <charconv>

namespace desktop {

namespace {

constexpr std::string_view kBeforeHost = "://";
constexpr std::size_t kEscapeLength = 3; // %HH

// Where the path of @p uri begins: behind the host, when there is one.
std::size_t pathOf(std::string_view uri)
{
    const std::size_t scheme = uri.find(kBeforeHost);
    return scheme == std::string_view::npos ? 0 : std::min(uri.find('/', scheme + kBeforeHost.size()), uri.size());
}

bool hasDrive(std::string_view path)
{
    return path.size() > 1 && path[1] == ':';
}

} // namespace

bool hasScheme(std::string_view reference)
{
    return reference.find(kBeforeHost) != std::string_view::npos;
}

std::string withoutEscapes(std::string_view uri)
{
    std::string path;
    path.reserve(uri.size());
    for (std::size_t i = 0; i < uri.size(); ++i) {
        const std::string_view form = uri.substr(i, kEscapeLength);
        unsigned char byte = 0;
        const bool complete = form.size() == kEscapeLength && form.front() == '%';
        if (complete && std::from_chars(form.data() + 1, form.data() + kEscapeLength, byte, 16).ptr == form.end()) {
            path.push_back(static_cast<char>(byte));
            i += kEscapeLength - 1;
        } else {
            path.push_back(uri[i]);
        }
    }
    return path;
}

std::string resolvedReference(std::string_view base, std::string_view reference)
{
    if (base.empty() || reference.empty() || hasScheme(reference) || hasDrive(reference)) {
        return std::string(reference.empty() ? base : reference);
    }
    const std::size_t path = pathOf(base);
    if (reference.front() == '/') {
        return std::string(base.substr(0, path)).append(reference);
    }
    const std::size_t slash = base.rfind('/');
    const bool hasFolder = slash != std::string_view::npos && slash >= path;
    const std::string folder =
        hasFolder ? std::string(base.substr(0, slash + 1)) : std::string(base.substr(0, path)) + (path > 0 ? "/" : "");
    return folder + std::string(reference);
}

} // namespace desktop
