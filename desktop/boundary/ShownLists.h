#pragma once

#include "desktop/browsing/FolderListings.h"
#include "desktop/grouping/Grouping.h"
#include "desktop/playlists/Playlists.h"

#include <functional>
#include <string>

namespace desktop {

/// The lists that the user interface has been shown, and which of them a play command means. Operations are called on the
/// command thread.
class ShownLists {
public:
    /// All outlive this object.
    ShownLists(FolderListings& listings, Grouping& grouping, Playlists& playlists)
        : m_listings(listings)
        , m_grouping(grouping)
        , m_playlists(playlists)
    {
    }

    /// @p list, of directory or playlist @p name, is shown.
    void show(const std::string& name, EntryList list);
    /// The current directory, @p directory, is shown, from when it has been read on.
    void showCurrent(const std::string& directory);
    /// The group @p key is shown.
    void showGroup(const std::string& key);

    /// The entries of the current directory; null until it has been read.
    EntryList current() const;
    /// The entries of @p path, a directory or a playlist, read now unless they are known and unchanged; null when that fails
    /// or takes too long.
    EntryList read(const std::string& path);
    /// The list that a play command means by @p name: a directory, a playlist, a group's key, or empty for the list shown
    /// last. It is as it was shown last; only one that has never been shown is read. Null when there is none, which is
    /// logged.
    EntryList toPlay(const std::string& name);

private:
    bool wasShownLast(const std::string& name) const;

    FolderListings& m_listings;
    Grouping& m_grouping;
    Playlists& m_playlists;
    std::string m_name; ///< of the list shown last
    std::function<EntryList()> m_list;
};

} // namespace desktop
