#include "desktop/workers/PlaylistTransfer.h"

#include "desktop/text/Utf8.h"

#include <climits>
#include <cstdint>
#include <cstring>
#include <optional>

namespace desktop {

namespace {

constexpr std::size_t kMaxText = PATH_MAX; // bytes; nothing longer can be opened

using Length = std::uint32_t;

void pack(std::string& bytes, const std::string& text)
{
    const Length length = text.size() <= kMaxText ? static_cast<Length>(text.size()) : 0;
    bytes.append(reinterpret_cast<const char*>(&length), sizeof length).append(text, 0, length);
}

std::optional<std::string> unpack(std::string_view& bytes)
{
    Length length = 0;
    if (bytes.size() < sizeof length) {
        return std::nullopt;
    }
    std::memcpy(&length, bytes.data(), sizeof length);
    bytes.remove_prefix(sizeof length);
    if (length > kMaxText || length > bytes.size()) {
        return std::nullopt;
    }
    std::string text(bytes.substr(0, length));
    bytes.remove_prefix(length);
    return text;
}

std::string shown(std::string text)
{
    return isUtf8(text) ? std::move(text) : std::string();
}

} // namespace

std::string packEntries(const PlaylistEntries& entries)
{
    std::string bytes;
    for (std::size_t i = 0; i < entries.size() && i < kMaxPlaylistEntries; ++i) {
        const std::size_t before = bytes.size();
        for (const std::string* const text : {&entries[i].target, &entries[i].path, &entries[i].title}) {
            pack(bytes, *text);
        }
        if (bytes.size() > kMaxPackedEntries) {
            bytes.resize(before);
            break;
        }
    }
    return bytes;
}

PlaylistEntries unpackEntries(std::string_view bytes)
{
    PlaylistEntries entries;
    while (entries.size() < kMaxPlaylistEntries) {
        auto target = unpack(bytes);
        auto path = target ? unpack(bytes) : std::nullopt;
        auto title = path ? unpack(bytes) : std::nullopt;
        if (!title) {
            break;
        }
        entries.push_back({std::move(*target), shown(std::move(*path)), shown(std::move(*title))});
    }
    return entries;
}

} // namespace desktop
