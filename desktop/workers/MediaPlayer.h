#pragma once

#include "desktop/base/UniqueFd.h"

#include "platform/SocMwTypes.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace desktop {

/// Where players show and sound what they play.
struct PlayerOutput {
    bool window = false; ///< videos and photos in a window on the computer's display
    bool sound = false;  ///< through the computer's own output
};

/// How the picture of a video fills the screen; the numbers are those of the requests.
enum class PictureSize { Automatic = 0, FourToThree = 1, SixteenToNine = 2, Stretched = 3, Original = 4, Zoomed = 5 };

/// How a medium is played and shown. Values are within the ranges given; whoever sets them has checked.
struct PlayerOptions {
    int audioTrack = 0;                               ///< MediaTrack::id; 0: the file's own choice
    int subtitleTrack = 0;                            ///< MediaTrack::id; 0: the file's own choice
    bool subtitles = true;                            ///< whether they are shown; they are told in either case
    double subtitleScale = 1.0;                       ///< 0.5 to 2
    std::uint32_t subtitleColor = 0xFFFFFF;           ///< 0xRRGGBB
    int subtitlePosition = 100;                       ///< percent of the screen's height, 0 to 100: the lower edge
    int subtitleDelay = 0;                            ///< milliseconds, -60,000 to 60,000; positive: later
    std::string subtitleCharset;                      ///< of files beside the video, as ICU names it; empty: guessed
    double speed = 1.0;                               ///< 0.5 to 2
    PictureSize pictureSize = PictureSize::Automatic; ///< of videos
    double zoom = 1.0;                                ///< of photos, 1 to 8
    int turn = 0;                                     ///< degrees clockwise, besides the file's own: 0, 90, 180, 270

    bool operator==(const PlayerOptions& other) const = default;
};

/// A subtitle file beside a video.
struct SubtitleFile {
    std::string name;     ///< as text, for its extension and for the user
    std::string language; ///< ISO 639 code by its name; may be empty
    UniqueFd fd;          ///< a regular file
    UniqueFd pictures{};  ///< of the .sub file that belongs to an .idx file
};

/// What a player is to play.
struct PlayerMedium {
    std::uint64_t number = 0;          ///< names this medium in the player's events; each is larger than the one before
    FileType type = FILE_TYPE_UNKNOWN; ///< video, music, photo or 360-degree photo
    UniqueFd fd;                       ///< a regular file
    double start = 0;                  ///< seconds from which on it plays
    bool paused = false;               ///< whether it waits at its start
    std::vector<SubtitleFile> subtitles{};
    PlayerOptions options{};
};

/// A track of sound or subtitles.
struct MediaTrack {
    int id = 0;            ///< from 1 on, for each kind by itself; what PlayerOptions names
    std::string title;     ///< may be empty; of a file beside the video: its name
    std::string language;  ///< as the file says; may be empty
    std::string codec;     ///< as libavcodec names it
    bool external = false; ///< from a file beside the video
};

/// Facts of a video or of a music's picture. Texts are empty and numbers 0 where the file does not say.
struct VideoFacts {
    std::string codec; ///< as libavcodec names it
    std::string profile;
    std::string level;
    int width = 0;        ///< pixels, as shown: after turning
    int height = 0;       ///< pixels, as shown
    double frameRate = 0; ///< frames a second
    bool hdr = false;     ///< PQ or HLG
};

/// Facts of the sound that plays.
struct AudioFacts {
    std::string codec; ///< as libavcodec names it
    std::string profile;
    std::string level;
    int channels = 0;
    int sampleRate = 0; ///< Hz
    int bitRate = 0;    ///< bits a second
};

/// What a player knows of a medium once it is loaded. Texts are UTF-8 on one line.
struct MediaFacts {
    double duration = 0; ///< seconds; 0 where the file does not say, and for photos
    std::string title;   ///< by the file's own tags; empty where it has none
    std::string artist;
    std::string album;
    std::string date;
    VideoFacts video;     ///< of a photo: its codec, size and, as the profile, how it is coded ("Baseline", "Progressive")
    AudioFacts audio;     ///< of the track that plays
    std::string subtitle; ///< codec of the subtitle track that is chosen
    std::vector<MediaTrack> audioTracks{};
    std::vector<MediaTrack> subtitleTracks{};
    int audioTrack = 0;            ///< the one that plays; 0: none
    int subtitleTrack = 0;         ///< the one that is chosen; 0: none
    bool audioUnsupported = false; ///< there is sound, which cannot be decoded: it plays on silently
    bool videoUnsupported = false; ///< there is a video, which cannot be decoded: only its sound plays
};

// What players tell. Each comes with the number of its medium.

/// The first picture or sound is there, and the medium plays.
struct PlayerLoaded {
    MediaFacts facts;
};

/// Facts have changed: another track has been chosen.
struct PlayerFactsChanged {
    MediaFacts facts;
};

/// Where it plays. Told once a second of the clock, while it gets from one second of the medium to another, and after a
/// jump.
struct PlayerPosition {
    double seconds = 0;
};

/// Winding has reached the start, from where it plays on at its usual speed.
struct PlayerAtStart {};

/// The text subtitle that is shown from now on; empty: none.
struct PlayerSubtitleText {
    std::string text; ///< UTF-8; lines end in "\n"
};

/// The picture subtitle that is shown from now on; no PNG: none.
struct PlayerSubtitlePicture {
    std::string png;                         ///< a PNG file
    int x = 0, y = 0, width = 0, height = 0; ///< in pixels of the video
};

/// Playing has ended.
struct PlayerEnded {
    enum class Reason {
        Finished,    ///< the end of the medium
        LoadFailed,  ///< it has never played: empty, no media, damaged
        ReadFailed,  ///< the file could not be read any more
        Incomplete,  ///< the file itself ends well before the medium does
        Unsupported, ///< there is nothing in it that can be decoded
        PlayerLost,  ///< the player's process has died, or does not answer any more
    };
    Reason reason = Reason::Finished;
    std::string text;    ///< why, for the user, unless it is finished
    double position = 0; ///< seconds, where it was known to play last
};

/// A key of the window: the name that mpv has for it ("SPACE", "LEFT", "q"); "CLOSE_WIN" for its close button.
struct PlayerKey {
    std::string name;
};

using PlayerTold = std::variant<PlayerLoaded, PlayerFactsChanged, PlayerPosition, PlayerAtStart, PlayerSubtitleText,
                                PlayerSubtitlePicture, PlayerEnded, PlayerKey>;

struct PlayerEvent {
    std::uint64_t medium = 0;
    PlayerTold told;
};

/// A picture of what a player shows: rows of RGB pixels, four bytes each, the fourth unused.
struct ScreenFrame {
    int width = 0;
    int height = 0;
    std::shared_ptr<const std::uint8_t> pixels; ///< width * height * 4 bytes, which no one changes
};

/// Plays one medium at a time. Operations return at once and are safe on any thread; what is meant for a medium that has
/// ended, or for none, does nothing. After PlayerEnded nothing more is told of a medium.
class MediaPlayer {
public:
    /// Called on a thread of the player's, one event at a time. May call the player, but not destroy it.
    using Handler = std::function<void(PlayerEvent event)>;
    /// Gets the frame, or one without pixels when there is none.
    using FrameHandler = std::function<void(ScreenFrame frame)>;

    virtual ~MediaPlayer() = default;

    /// Plays @p medium in place of what plays, of which nothing more is told.
    virtual void load(PlayerMedium medium) = 0;
    /// Ends what plays, of which nothing more is told.
    virtual void unload() = 0;
    /// Ends winding, too, where it is.
    virtual void pause(bool paused) = 0;
    /// Winds: 2, 4, 8 or 16 times as fast, backwards when negative; 1 plays on. None of them stays paused; photos are not
    /// wound.
    virtual void wind(int speed) = 0;
    /// Jumps to @p seconds.
    virtual void seek(double seconds) = 0;
    virtual void setOptions(const PlayerOptions& options) = 0;
    /// Draws what is shown, subtitles and turning included, @p width x @p height pixels large, bars around it black, and
    /// hands it to @p handle on a thread of the player's, within a second.
    virtual void takeFrame(int width, int height, FrameHandler handle) = 0;
};

/// Makes a player for media of @p type, one of photo, video and music.
using PlayerFactory = std::function<std::unique_ptr<MediaPlayer>(FileType type, MediaPlayer::Handler handle)>;

} // namespace desktop
