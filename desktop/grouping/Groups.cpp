#include "desktop/grouping/Groups.h"

#include "desktop/text/AsciiText.h"
#include "desktop/text/NaturalOrder.h"

#include <algorithm>

namespace desktop {

namespace {

constexpr const char* kAll = "All";
constexpr const char* kUnknown = "Unknown";

// Parts of "YYYY-MM-DD hh:mm:ss".
constexpr std::size_t kYearLength = 4;
constexpr std::size_t kMonthBegin = 5;
constexpr std::size_t kMonthLength = 2;
constexpr std::size_t kYearAndMonthLength = 7;
constexpr std::size_t kDayLength = 10;

std::string part(const std::string& taken, std::size_t begin, std::size_t length)
{
    return taken.size() >= begin + length ? taken.substr(begin, length) : "";
}

// Empty when the metadata has none.
std::string groupOf(const MediaMetadata& metadata, GroupFileType type)
{
    switch (type) {
    case GROUP_TYPE_GENRE:
        return trimmed(metadata.genre);
    case GROUP_TYPE_ARTIST:
        return trimmed(metadata.artist);
    case GROUP_TYPE_ALBUM:
        return trimmed(metadata.album);
    case GROUP_TYPE_DATE:
        return part(metadata.taken, 0, kDayLength);
    case GROUP_TYPE_MONTH:
        return part(metadata.taken, 0, kYearAndMonthLength);
    case GROUP_TYPE_MONTH_OF_YEAR:
        return part(metadata.taken, kMonthBegin, kMonthLength);
    case GROUP_TYPE_YEAR:
        return part(metadata.taken, 0, kYearLength);
    default:
        return kAll;
    }
}

} // namespace

Groups::Groups(MediaEntries entries, GroupFileType type)
    : m_entries(std::move(entries))
{
    std::vector<const MediaEntry*> unknown;
    for (const MediaEntry& entry : m_entries) {
        const std::string key = groupOf(entry.metadata, type);
        std::vector<const MediaEntry*>& group = key.empty() ? unknown : m_files[key];
        group.push_back(&entry);
    }
    for (const auto& group : m_files) {
        m_keys.push_back(group.first);
    }
    sortNaturally(m_keys, [](const std::string& key) { return key; });
    if (!unknown.empty()) {
        std::vector<const MediaEntry*>& group = m_files[kUnknown];
        if (group.empty()) {
            m_keys.emplace_back(kUnknown);
        }
        group.insert(group.end(), unknown.begin(), unknown.end());
    }
}

std::optional<std::vector<const MediaEntry*>> Groups::files(const std::string& key, GroupOrder order) const
{
    const auto found = m_files.find(key);
    if (found == m_files.end()) {
        return std::nullopt;
    }
    std::vector<const MediaEntry*> files = found->second;
    if (order != GroupOrder::AsWalked) {
        sortNaturally(files, [](const MediaEntry* entry) { return entry->file.name; });
    }
    if (order == GroupOrder::NameDescending) {
        std::reverse(files.begin(), files.end());
    }
    return files;
}

bool areGroups(GroupFileType type)
{
    return type >= GROUP_TYPE_NONE && type <= GROUP_TYPE_YEAR;
}

bool isGrouped(FileType kind, GroupFileType type)
{
    const bool photos = type == GROUP_TYPE_NONE || type >= GROUP_TYPE_DATE;
    const bool music = type <= GROUP_TYPE_ALBUM;
    return (kind == FILE_TYPE_PHOTO && photos) || (kind == FILE_TYPE_MUSIC && music);
}

} // namespace desktop
