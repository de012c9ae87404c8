#pragma once

#include "desktop/base/LastingDatabase.h"
#include "desktop/base/ThreadAnnotations.h"
#include "desktop/metadata/StoredPlace.h"

#include <condition_variable>
#include <cstdint>
#include <list>
#include <map>
#include <optional>
#include <thread>

namespace desktop {

/// Remembers where videos were left, each by its volume and its path beneath it, in a database that outlasts the program.
/// There are 10,000 of them at most: the one noted longest ago is forgotten. What cannot be written is logged, and tried
/// again with the next change and at the end. Safe on any thread; no operation waits for the disk.
class PlayPositions {
public:
    /// Reads what is remembered in folder @p cacheFolder, made when missing; in memory only when that is empty.
    explicit PlayPositions(const std::string& cacheFolder);
    /// Writes what is still to be written.
    ~PlayPositions();
    PlayPositions(const PlayPositions&) = delete;
    PlayPositions& operator=(const PlayPositions&) = delete;

    /// Where @p file was left, in seconds.
    std::optional<double> find(const Location& file) const;
    /// @p file is at @p seconds of @p duration, which is 0 when it is not known. The first and the last 5 seconds, and the
    /// first and the last 5 %, are not worth returning to: there the file is forgotten. Written soon, in the background.
    void note(const Location& file, double seconds, double duration);
    /// Forgets @p file, or all files. Written likewise.
    void forget(const Location& file);
    void forgetAll();

private:
    struct Connection;

    struct Noted {
        std::int64_t milliseconds = 0;
        std::int64_t number = 0; ///< larger than that of what was noted before
    };
    struct Position {
        StoredPlace file;
        Noted noted;
    };
    /// What is to be written.
    struct Changes {
        bool forgetAll = false;                              ///< before the others
        std::map<StoredPlace, std::optional<Noted>> files{}; ///< nothing: forgotten

        bool empty() const { return !forgetAll && files.empty(); }
        /// Adds what was to be written before these.
        void addEarlier(Changes earlier);
    };

    void load(Connection& connection);
    void add(const StoredPlace& file, const Noted& noted) REQUIRES(m_mutex);
    void remove(const StoredPlace& file) REQUIRES(m_mutex);
    void forgetLocked(const StoredPlace& file) REQUIRES(m_mutex);
    void changeLocked(const StoredPlace& file, const std::optional<Noted>& noted) REQUIRES(m_mutex);
    /// @p changes and all that is known besides.
    Changes withEverything(const Changes& changes) const;
    void writeLoop();
    bool write(const Changes& changes);

    mutable Mutex m_mutex;
    std::condition_variable m_changed;
    std::list<Position> m_positions GUARDED_BY(m_mutex); ///< the one noted longest ago first
    std::map<StoredPlace, std::list<Position>::iterator> m_byFile GUARDED_BY(m_mutex);
    std::int64_t m_lastNumber GUARDED_BY(m_mutex) = 0;
    Changes m_changes GUARDED_BY(m_mutex);    ///< not written yet
    bool m_isDue GUARDED_BY(m_mutex) = false; ///< some have come since the last attempt
    bool m_ending GUARDED_BY(m_mutex) = false;
    LastingDatabase<Connection> m_database; ///< the thread's, once it has been read
    std::thread m_thread;
};

} // namespace desktop
