#pragma once

#include "desktop/browsing/FolderListings.h"
#include "desktop/files/LocationOpener.h"
#include "desktop/grouping/Grouping.h"
#include "desktop/playlists/Playlists.h"

#include <deque>
#include <string>

namespace desktop {

/// The lists that the user interface has been shown, and which of them a play command means. The 32 shown last are known, as
/// long as those that are no directory's or group's have 200,000 entries at most. Operations are called on the command
/// thread.
class ShownLists {
public:
    /// All outlive this object.
    ShownLists(const LocationOpener& volumes, FolderListings& listings, Grouping& grouping, Playlists& playlists)
        : m_volumes(volumes)
        , m_listings(listings)
        , m_grouping(grouping)
        , m_playlists(playlists)
    {
    }

    /// @p list, of directory or playlist @p name, is shown.
    void show(const std::string& name, EntryList list);
    /// The current directory, @p directory, is shown, from when it has been read on.
    void showCurrent(const std::string& directory);
    /// The group @p key is shown, in the order that its pages have now; of the latest grouping that there is when it is
    /// asked for.
    void showGroup(const std::string& key);
    /// Forgets the lists below @p directory, but for the one shown last.
    void forgetBelow(const std::string& directory);

    /// The entries of the current directory; null until it has been read.
    EntryList current() const;
    /// The entries of @p path, a directory or a playlist, read now unless they are known and unchanged; null when that fails
    /// or takes too long.
    EntryList read(const std::string& path);
    /// The list that a play command means by @p name: a directory, a playlist, a group's key, or empty for the list shown
    /// last. It is as it was shown last, and no file is looked at for it; only one that is not known is read. Null when
    /// there is none, which is logged.
    EntryList toPlay(const std::string& name);

private:
    enum class Kind { Fixed, Directory, Group };

    struct Shown {
        Kind kind = Kind::Fixed;
        std::string name;     ///< of a place without a trailing slash
        std::string volumeId; ///< of the stick that it lies on
        EntryList entries;    ///< of a fixed one
        GroupOrder order;     ///< of a group
    };

    void add(Kind kind, std::string name, EntryList entries = nullptr);
    bool isTooMuch() const;
    const Shown* find(const std::string& name) const;
    bool isOfAnotherStick(const Shown& shown) const;
    EntryList entriesOf(const Shown& shown) const;

    const LocationOpener& m_volumes;
    FolderListings& m_listings;
    Grouping& m_grouping;
    Playlists& m_playlists;
    std::deque<Shown> m_shown; ///< the last one first
};

} // namespace desktop
