#pragma once

#include "desktop/player/FrameDrawer.h"
#include "desktop/player/Mailbox.h"
#include "desktop/player/MpvSettings.h"
#include "desktop/player/Preparation.h"
#include "desktop/player/StreamFiles.h"
#include "desktop/player/SubtitlePictures.h"
#include "desktop/player/Winding.h"
#include "desktop/workers/WorkerChannel.h"

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace desktop {

/// The player's process at work: does what comes over the channel, and tells there what becomes of it. Everything happens on
/// the thread that runs it; other threads put work into its mailbox.
class Player {
public:
    /// Throws std::runtime_error.
    Player(const PlayerOutput& output, int channel);
    ~Player();

    /// Returns when nobody is at the other end of the channel.
    void run();

private:
    using Clock = std::chrono::steady_clock;

    /// A track of subtitles, and where it is read from.
    struct Track {
        MediaTrack media;
        std::shared_ptr<OpenMedium> file;
        int stream = 0; ///< libavformat's index in that file
        bool preferred = false;
    };

    /// What plays, or is about to.
    struct Medium {
        std::uint64_t number = 0;
        FileType type = FILE_TYPE_UNKNOWN;
        double start = 0;
        bool paused = false;
        PlayerOptions options;
        std::shared_ptr<OpenMedium> file;                             ///< null once a photo has been read
        std::vector<std::string> names;                               ///< that mpv knows its files by
        std::map<std::string, std::shared_ptr<OpenMedium>> externals; ///< files of subtitles by their names
        std::optional<PreparedMedium> prepared;
        std::int64_t entry = -1; ///< mpv's number for it; below 0: mpv has none yet
        std::uint64_t hook = 0;  ///< where mpv waits for us; 0: it does not
        bool begun = false;      ///< mpv has begun with it
        bool released = false;   ///< and has been told how to play it
        bool loaded = false;
        MediaFacts facts;
        PictureTurn turn;
        double position = 0;            ///< seconds, where it played last
        long toldSecond = -1;           ///< the last one; -1: the next one is told at once, whatever it is
        Clock::time_point nextTelling;  ///< of a position, at the earliest
        std::optional<Winding> winding; ///< by jumps
        Clock::time_point nextJump;
        double landed = -1;       ///< seconds, where the last jump led to
        bool landsAgain = false;  ///< the one before it led there, too
        bool leavesJumps = false; ///< winding by jumps has ended, and mpv is on its way to where
        bool sought = false;      ///< a jump that was asked for is to be told
        int windingSpeed = 1;     ///< by mpv's own speed; 1: not wound so
        std::string toldText;
        std::unique_ptr<SubtitlePictures> pictures;
        bool showsPicture = false;

        bool isPhoto() const { return type == FILE_TYPE_PHOTO || type == FILE_TYPE_PANORAMA; }
    };

    void receive();
    void handle(WorkerMessage message);
    void load(WorkerMessage message);
    void pause(bool paused);
    void wind(int speed);
    void seek(double seconds);
    void setOptions(const PlayerOptions& options);
    void takeFrame(WorkerMessage message);
    void frameDrawn(int number, bool drawn) const;

    void prepare(std::vector<SubtitleFile> beside);
    void prepared(std::uint64_t number, PreparedMedium medium);
    void giveToMpv(const std::shared_ptr<OpenMedium>& file);
    void continueLoading();
    void applyOptionsNow();
    void addSubtitles();
    void removeSubtitles();
    void chooseTracks();
    int chosenAudio() const;
    int chosenSubtitle() const;
    std::vector<Track> subtitleTracks() const;

    void handleMpv();
    void handleEvent(const mpv_event& event);
    void handleReply(const mpv_event& event);
    void handleHook(std::uint64_t hook);
    void handleRestart();
    void arrive();
    void becomeLoaded();
    void handleEndOfFile(const mpv_event_end_file& ended);
    bool hasPicture() const;
    void handleProperty(const mpv_event_property& property);
    void handleMessage(const mpv_event_client_message& message);

    MediaFacts currentFacts() const;
    void updateFacts();
    void updatePictures();
    void showPicture(std::uint64_t number, PlayerSubtitlePicture picture);
    void hidePicture();
    double subtitlePosition() const;
    double position() const;
    void updatePosition(double seconds);
    void tellText();
    void reachEnd();
    void finish();
    void readFailed(std::uint64_t number);
    void end(PlayerEnded ended);
    void clear();
    void closed(std::uint64_t number) const;

    void tick();
    void jumpAlong();
    void windToStart();
    void playOn(double position);
    int pollTime() const;
    void beat();
    void tell(PlayerTold told) const;

    const PlayerOutput m_output;
    const int m_channel;
    const std::shared_ptr<Mailbox> m_mailbox;
    StreamFiles m_files;
    Mpv m_mpv;
    std::unique_ptr<FrameDrawer> m_drawer; ///< without a window
    std::vector<SubtitleFile> m_beside;    ///< of the medium that is to come
    std::unique_ptr<Medium> m_medium;
    Clock::time_point m_nextBeat;
    bool m_alone = false; ///< nobody is at the other end of the channel
};

} // namespace desktop
