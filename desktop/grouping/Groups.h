#pragma once

#include "desktop/workers/MediaMetadata.h"

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace desktop {

/// A media file as lists show it, and its metadata.
struct MediaEntry {
    FolderFileInfo_s file;
    MediaMetadata metadata;
};
using MediaEntries = std::deque<MediaEntry>;

/// The order in which a group's files are listed.
enum class GroupOrder { AsWalked, NameAscending, NameDescending };

/// Media files in groups. A file has a group for each of its artists or genres; files whose metadata has none share one,
/// which comes last. Spellings that differ in case or in how letters are composed are one group.
class Groups {
public:
    /// @p entries: in the order of the walk that met them. @p type: one for which areGroups() holds.
    Groups(MediaEntries entries, GroupFileType type);
    Groups(const Groups&) = delete;
    Groups& operator=(const Groups&) = delete;

    /// The groups' names, in natural order; each in the spelling of most of its files, and of those the first in that order.
    const std::vector<std::string>& keys() const { return m_keys; }
    /// The files of group @p key, in any of its spellings; nothing when there is no such group. Valid with this object.
    std::optional<std::vector<const MediaEntry*>> files(const std::string& key, GroupOrder order) const;

private:
    void addUnknown(const std::vector<const MediaEntry*>& files);

    MediaEntries m_entries;
    std::vector<std::string> m_keys;
    std::map<std::string, std::vector<const MediaEntry*>> m_files; ///< by their groups' folded names
};

/// Whether files can be grouped by @p type.
bool areGroups(GroupFileType type);
/// Whether grouping by @p type takes in files of @p kind.
bool isGrouped(FileType kind, GroupFileType type);

} // namespace desktop
