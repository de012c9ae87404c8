#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/jobs/Alarm.h"
#include "desktop/playback/PlaySession.h"

#include <array>

namespace desktop {

/// What is to be played.
struct PlayRequest {
    EntryList list;                    ///< not null
    FileType kind = FILE_TYPE_UNKNOWN; ///< photo, video or music
    std::size_t index = 0;             ///< in the list; when that entry is of another kind, the next of this kind plays
    bool playAll = false;              ///< goes on through the entries of this kind
    bool resume = false;               ///< a video begins where it was left
    bool second = false;               ///< for the second browser
    double start = 0;                  ///< seconds from which on it plays when it does not resume
};

/// What playing would begin with.
struct PlayFirst {
    std::uint32_t index = 0; ///< in the list
    bool resumes = false;    ///< a position is remembered
};

/// A medium that plays.
struct CurrentMedium {
    PlayingItem item;
    MediaFacts facts;
};

/// What plays on the desktop: videos, music and photos, each with a player of its own. A video stops the others; music goes
/// on behind photos. Every effect comes as an event. Operations return at once, whatever the sticks and the players do, and
/// are safe on any thread.
class Playback {
public:
    /// @p events must outlive this object. @p keyPressed gets the keys of the players' windows on a thread of theirs; may be
    /// null.
    Playback(LocationOpener volumes, EventQueue& events, std::shared_ptr<PlayPositions> positions,
             const PlayerFactory& players, std::function<void(const std::string& key)> keyPressed = nullptr,
             const PlayTimes& times = {});
    ~Playback();
    Playback(const Playback&) = delete;
    Playback& operator=(const Playback&) = delete;

    /// Plays, and returns the index of the entry that plays; nothing when the list has none.
    std::optional<std::uint32_t> play(const PlayRequest& request);
    /// What play() would begin with.
    std::optional<PlayFirst> firstOf(const PlayRequest& request);
    /// Stops what the player for @p kind plays, and returns its index; nothing when it plays nothing.
    std::optional<std::uint32_t> stop(FileType kind);
    /// Stops all players, or all but the one for music.
    void stopAll(bool keepMusic);
    void forgetPositions();

    // The keys of the remote control, for the player of @p kind; false when it plays nothing, or nothing follows.
    bool playOrPause(FileType kind, bool play);
    bool next(FileType kind);
    bool previous(FileType kind);
    bool wind(FileType kind, bool forwards);

    /// False when there is no such mode or kind.
    bool setMode(FileType kind, int mode);
    std::optional<PlayerModeE> mode(FileType kind) const;

    /// What the player for @p kind plays; nothing until it is loaded.
    std::optional<CurrentMedium> current(FileType kind) const;
    /// What was begun last of all that plays.
    std::optional<CurrentMedium> current() const;

    /// The options of the player for @p kind.
    PlayerOptions options(FileType kind) const;
    /// Changes the options of the player for @p kind by @p change, which gets what is known of the medium that plays, null
    /// when none does, and says whether they have been changed. Returns what it says.
    bool changeOptions(FileType kind, const std::function<bool(PlayerOptions& options, const MediaFacts* facts)>& change);
    void setSlideInterval(std::chrono::seconds interval);

    /// Draws what the screen shows, as MediaPlayer::takeFrame does: the video, else the photo, else the picture of the
    /// music.
    void takeFrame(int width, int height, MediaPlayer::FrameHandler handle);

    /// Volume @p volume, a path as bytes, has been removed: what plays from it fails.
    void volumeRemoved(const std::string& volume);

private:
    static constexpr std::size_t kPlayers = 3;

    PlaySession* session(FileType kind) REQUIRES(m_mutex);
    const PlaySession* session(FileType kind) const REQUIRES(m_mutex);
    template <typename Action>
    bool act(FileType kind, const Action& action);
    void makeWay(FileType kind) REQUIRES(m_mutex);
    void setAlarm() REQUIRES(m_mutex);
    void opened(OpenedMedium medium);
    void told(FileType kind, PlayerEvent event);
    std::optional<Alarm::Clock::time_point> timePassed();

    const LocationOpener m_volumes;
    const PlayEvents m_events;
    const std::shared_ptr<PlayPositions> m_positions;
    const std::function<void(const std::string& key)> m_keyPressed;
    const PlayTimes m_times;
    mutable Mutex m_mutex;
    std::array<std::unique_ptr<PlaySession>, kPlayers> m_sessions; ///< each guarded by the mutex; made once
    FileType m_latest GUARDED_BY(m_mutex) = FILE_TYPE_UNKNOWN;     ///< of the player that began last
    bool m_closed GUARDED_BY(m_mutex) = false;                     ///< what is told now comes too late
    MediumOpener m_files GUARDED_BY(m_mutex); // after the sessions, which it calls until it is destroyed
    Alarm m_alarm;                            // likewise
};

} // namespace desktop
