#pragma once

#include "desktop/base/IntervalTimer.h"
#include "desktop/files/DirectoryStream.h"
#include "desktop/files/PathResolver.h"
#include "desktop/files/VolumePresence.h"

#include <sys/types.h>

#include <functional>
#include <stop_token>

namespace desktop {

/// A folder that a walk has come to. Valid for the length of the call.
struct WalkedFolder {
    int fd;                                ///< open for reading
    const Location& location;              ///< where it is
    const std::vector<std::string>& files; ///< the regular files that were wanted, in natural order, as bytes
};

/// What a walk has met so far.
struct WalkTotals {
    std::size_t folders = 0;
    std::size_t entries = 0;    ///< of all kinds
    std::size_t unreadable = 0; ///< folders that could not be read, or not to their end
};

/// Goes through a folder and all folders below it, each before those in it, in natural order. Follows no links. Depth and
/// number are bounded by the file system alone: at any time two descriptors are open.
class TreeWalk {
public:
    /// Whether the regular file @p name, as bytes, is of interest.
    using Wants = std::function<bool(std::string_view name)>;
    using Visit = std::function<void(const WalkedFolder& folder, const WalkTotals& totals)>;

    TreeWalk(Location root, std::stop_token cancelled, Wants wants, Visit visit);

    /// Walks the tree. Returns 0, or why it ended early as an errno value: ECANCELED, ENODEV when the volume has gone, or
    /// what is wrong with the first folder. Any other folder that cannot be read is logged, counted and passed by.
    int run();
    const WalkTotals& totals() const { return m_totals; }

private:
    /// A folder on the way to the current one.
    struct Step {
        dev_t device;
        ino_t inode;
        std::size_t pathLength;           ///< of its path in m_location
        std::vector<std::string> pending; ///< the folders in it that are still to be walked, the next one last
    };

    void nextFolder();
    void leaveFolder();
    void walkInto(Directory folder);
    int readEntries(DIR* folder, std::vector<std::string>& files, std::vector<std::string>& folders);
    Directory reopen(const Step& step) const;
    bool isOnTheWay(const struct stat& folder) const;
    void note(int error);

    Location m_location; ///< of the folder that is being read
    std::stop_token m_cancelled;
    Wants m_wants;
    Visit m_visit;
    VolumePresence m_volume;
    IntervalTimer m_presenceTimer;
    WalkTotals m_totals;
    std::vector<Step> m_steps;
    Directory m_current; ///< the folder of the last step; null when it could not be opened again
};

} // namespace desktop
