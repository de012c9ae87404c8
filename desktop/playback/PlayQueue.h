#pragma once

#include "desktop/files/Pages.h"

#include <cstddef>
#include <optional>
#include <random>

namespace desktop {

/// Whether an entry of type @p entry is played by the player for @p kind, one of photo, video and music.
bool isOfKind(int entry, FileType kind);

/// The entries of one kind in a list, and which of them plays. Not safe on several threads.
class PlayQueue {
public:
    /// What is played of @p list from entry @p index on: that entry, or else the next one of @p kind; nothing when there is
    /// none. @p seed decides the order of shuffling.
    static std::optional<PlayQueue> from(EntryList list, FileType kind, std::size_t index, unsigned int seed = 0);

    /// The place of the entry that plays in the list, from 0.
    std::size_t index() const { return m_indices[m_current]; }
    const FolderFileInfo_s& entry() const { return (*m_list)[index()]; }
    /// How many entries of the kind there are; at least 1.
    std::size_t size() const { return m_indices.size(); }

    /// The one that plays has ended: goes to the one that follows. False, and stays, when none does.
    bool advance(PlayerModeE mode);
    /// The user wants the next one. False, and stays, when there is none.
    bool next(PlayerModeE mode);
    /// The user wants the one before; while shuffling, the one that played before. False, and stays, when there is none.
    bool previous(PlayerModeE mode);

private:
    PlayQueue(EntryList list, std::vector<std::size_t> indices, std::size_t current, unsigned int seed);

    bool step(std::ptrdiff_t by, bool wraps);
    bool shuffleOn();
    std::size_t someUnplayed();
    void moveTo(std::size_t current);

    EntryList m_list;
    std::vector<std::size_t> m_indices;  ///< of the kind, in the list
    std::size_t m_current;               ///< in m_indices
    std::vector<std::size_t> m_history;  ///< what has played, in m_indices; the one that plays is among it
    std::size_t m_place = 0;             ///< of the one that plays in m_history
    std::vector<std::size_t> m_unplayed; ///< still to come before any comes again, while shuffling
    std::minstd_rand m_random;
};

} // namespace desktop
