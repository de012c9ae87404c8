#pragma once

#include "desktop/metadata/PlayPositions.h"
#include "desktop/playback/MediumOpener.h"
#include "desktop/playback/PlayEvents.h"
#include "desktop/playback/PlayQueue.h"

#include <chrono>

namespace desktop {

/// How long playback waits.
struct PlayTimes {
    std::chrono::milliseconds open{3000};  ///< for a file to open
    std::chrono::milliseconds keep{10000}; ///< until a video's position is kept again
};

/// What a session works with; all of it outlives the session.
struct PlayServices {
    const LocationOpener& volumes;
    MediumOpener& files;
    const PlayEvents& events;
    PlayPositions& positions;
    const PlayTimes& times;
};

/// One of the three players at work on its queue: photos, videos or music. It waits for nothing: what takes time is told to
/// it. Not safe on several threads; its owner sees to that.
class PlaySession {
public:
    using Clock = std::chrono::steady_clock;

    using MakePlayer = std::function<std::unique_ptr<MediaPlayer>()>;

    /// @p kind: photo, video or music. The player is made when there is something to play.
    PlaySession(FileType kind, const PlayServices& services, MakePlayer makePlayer);

    FileType kind() const { return m_item.kind; }
    /// Whether something plays, or is about to.
    bool isActive() const { return m_state != State::Idle; }
    /// What plays, or played last.
    const PlayingItem& item() const { return m_item; }
    /// What is known of what plays; null until it is loaded.
    const MediaFacts* facts() const { return m_state == State::Playing ? &m_facts : nullptr; }
    /// Only while facts() are there.
    MediaPlayer& player() { return *m_player; }
    PlayerModeE mode() const { return m_mode; }
    void setMode(PlayerModeE mode) { m_mode = mode; }

    /// Plays @p queue from @p position on, in seconds, in place of what plays. @p playAll: goes on through the queue.
    /// @p second: for the second browser.
    void play(PlayQueue queue, double position, bool playAll, bool second);
    /// Stops what plays and tells so. False when nothing does.
    bool stop();
    /// Ends what plays and tells nobody.
    void close();
    /// Remembers where the video that plays is now.
    void keepPosition();

    // The keys of the remote control. False when nothing plays that they mean something for.
    bool playOrPause(bool play);
    bool next() { return step(Direction::Forwards); }
    bool previous() { return step(Direction::Backwards); }
    /// Winds faster, in steps from 2 to 16 times as fast and then from 2 on again; an other direction begins at 2.
    bool wind(bool forwards);

    /// Takes @p options for what plays and all that follows.
    void setOptions(const PlayerOptions& options);
    const PlayerOptions& options() const { return m_options; }
    /// How long each photo of a slide show is shown, also the one that is shown now.
    void setSlideInterval(std::chrono::milliseconds interval);

    /// A file that was asked for has been opened, or not.
    void opened(OpenedMedium medium);
    /// The player has told something.
    void told(PlayerEvent event);
    /// Volume @p volume has been removed: what plays from it has failed.
    void volumeRemoved(const std::string& volume);

    /// When timePassed() is to be called; nothing: not at all.
    std::optional<Clock::time_point> due() const { return m_due; }
    void timePassed(Clock::time_point now);

private:
    enum class State { Idle, Opening, Loading, Playing };
    enum class Direction { Forwards, Backwards };

    void unload();
    void begin(double position);
    bool step(Direction direction);
    bool move(Direction direction);
    bool moveOn();
    void goIdle();
    void finish();
    void failLoad(const std::string& reason);
    void failPlaying();
    void failIncomplete();
    void goPastFailed();
    void endRun();
    void tellSpeed() const;
    void waitForNext();

    void handle(PlayerLoaded& told);
    void handle(PlayerFactsChanged& told);
    void handle(const PlayerPosition& told);
    void handle(const PlayerAtStart& told);
    void handle(const PlayerSubtitleText& told) { m_services.events.subtitle(told); }
    void handle(const PlayerSubtitlePicture& told) { m_services.events.subtitle(told); }
    void handle(const PlayerEnded& told);
    void handle(const PlayerKey& /*told*/) {} // for others

    const PlayServices m_services;
    const MakePlayer m_makePlayer;
    std::unique_ptr<MediaPlayer> m_player; ///< null until something is played
    PlayerModeE m_mode = PLAYER_MODE_SEQUENCE;
    PlayerOptions m_options;
    std::chrono::milliseconds m_slideInterval{5000};

    State m_state = State::Idle;
    std::uint64_t m_number = 0; ///< of the latest medium
    PlayingItem m_item;
    Location m_location; ///< of the item
    std::optional<PlayQueue> m_queue;
    bool m_playAll = false;
    Direction m_direction = Direction::Forwards; ///< the way that the latest step went
    std::size_t m_failures = 0;                  ///< entries that failed since one played to its end
    MediaFacts m_facts;
    double m_position = 0; ///< seconds
    int m_speed = 1;       ///< 1 as usual, else winding
    bool m_paused = false;
    Clock::time_point m_waitBegin;          ///< of waiting for the next photo, or for the next keeping of the position
    std::optional<Clock::time_point> m_due; ///< of the file's opening, the next photo or the next keeping of the position
};

} // namespace desktop
