#pragma once

#include "desktop/workers/MediaPlayer.h"

#include <string>
#include <vector>

namespace desktop {

/// A track of sound as libavformat describes it.
struct ProbedAudio {
    MediaTrack track;
    AudioFacts facts;
    bool decodable = false;
    bool preferred = false; ///< by its own mark
};

/// A track of subtitles within the file.
struct ProbedSubtitle {
    MediaTrack track;
    int stream = 0;         ///< libavformat's index
    bool preferred = false; ///< by its own mark
};

/// What libavformat says of a video or of music, before anything plays.
struct ProbedMedia {
    MediaFacts facts;         ///< but for what is chosen
    bool hasVideo = false;    ///< a video or a picture of music, decodable or not
    bool canShow = false;     ///< and it can be decoded
    int turn = 0;             ///< degrees clockwise by which the video is to be turned
    bool mirrored = false;    ///< left to right, before that
    double certainLength = 0; ///< seconds that sound or picture last for certain; 0: who knows
    std::vector<ProbedAudio> audio{};
    std::vector<ProbedSubtitle> subtitles{};
};

/// Whether subtitles in @p codec, as libavcodec names it, are pictures.
bool isPictureSubtitle(const std::string& codec);

/// Reads what the file @p fd says of itself. Throws MediaError.
ProbedMedia probeMedia(int fd);

/// The facts of the photo @p fd. Throws MediaError.
MediaFacts photoFacts(int fd);

} // namespace desktop
