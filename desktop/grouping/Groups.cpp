#include "desktop/grouping/Groups.h"

#include "desktop/text/AsciiText.h"
#include "desktop/text/FoldedText.h"
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

std::vector<std::string> withoutEmpty(const std::vector<std::string>& values)
{
    std::vector<std::string> names;
    for (const std::string& value : values) {
        std::string name = trimmed(value);
        if (!name.empty()) {
            names.push_back(std::move(name));
        }
    }
    return names;
}

/// The names of the groups to which a file belongs; none when its metadata does not tell.
std::vector<std::string> groupsOf(const MediaMetadata& metadata, GroupFileType type)
{
    switch (type) {
    case GROUP_TYPE_GENRE:
        return withoutEmpty(metadata.genres);
    case GROUP_TYPE_ARTIST:
        return withoutEmpty(metadata.artists);
    case GROUP_TYPE_ALBUM:
        return withoutEmpty({metadata.album});
    case GROUP_TYPE_DATE:
        return withoutEmpty({part(metadata.taken, 0, kDayLength)});
    case GROUP_TYPE_MONTH:
        return withoutEmpty({part(metadata.taken, 0, kYearAndMonthLength)});
    case GROUP_TYPE_MONTH_OF_YEAR:
        return withoutEmpty({part(metadata.taken, kMonthBegin, kMonthLength)});
    case GROUP_TYPE_YEAR:
        return withoutEmpty({part(metadata.taken, 0, kYearLength)});
    default:
        return {kAll};
    }
}

using Spellings = std::map<std::string, std::size_t>; ///< of one name, and how many files have each

/// The spelling that most files have; of several such, the first in natural order.
std::string commonest(const Spellings& spellings)
{
    const auto fewer = [](const auto& a, const auto& b) { return a.second < b.second; };
    const std::size_t most = std::max_element(spellings.begin(), spellings.end(), fewer)->second;
    std::vector<std::string> candidates;
    for (const auto& [spelling, files] : spellings) {
        if (files == most) {
            candidates.push_back(spelling);
        }
    }
    sortNaturally(candidates, [](const std::string& spelling) { return spelling; });
    return candidates.front();
}

} // namespace

Groups::Groups(MediaEntries entries, GroupFileType type)
    : m_entries(std::move(entries))
{
    std::map<std::string, Spellings> names; // by the names folded
    std::vector<const MediaEntry*> unknown;
    for (const MediaEntry& entry : m_entries) {
        const std::vector<std::string> groups = groupsOf(entry.metadata, type);
        for (const std::string& name : groups) {
            const std::string folded = foldedText(name);
            std::vector<const MediaEntry*>& files = m_files[folded];
            if (files.empty() || files.back() != &entry) {
                files.push_back(&entry);
                ++names[folded][name];
            }
        }
        if (groups.empty()) {
            unknown.push_back(&entry);
        }
    }
    for (const auto& spellings : names) {
        m_keys.push_back(commonest(spellings.second));
    }
    sortNaturally(m_keys, [](const std::string& key) { return key; });
    addUnknown(unknown);
}

void Groups::addUnknown(const std::vector<const MediaEntry*>& files)
{
    if (files.empty()) {
        return;
    }
    std::vector<const MediaEntry*>& group = m_files[foldedText(kUnknown)];
    if (group.empty()) {
        m_keys.emplace_back(kUnknown);
    }
    group.insert(group.end(), files.begin(), files.end());
}

std::optional<std::vector<const MediaEntry*>> Groups::files(const std::string& key, GroupOrder order) const
{
    const auto found = m_files.find(foldedText(trimmed(key)));
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
