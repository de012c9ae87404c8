#pragma once

#include "desktop/player/OpenMedium.h"
#include "desktop/worker/PictureSource.h"
#include "desktop/workers/MediaPlayer.h"

#include <functional>
#include <memory>

namespace desktop {

/// The subtitle track whose pictures are wanted.
struct PictureTrack {
    std::shared_ptr<OpenMedium> file;
    int stream = 0;        ///< libavformat's index
    bool external = false; ///< whether the file is another one than the video
    int width = 0;         ///< pixels of the video
    int height = 0;        ///< pixels of the video
};

/// Decodes the pictures of a subtitle track beside mpv, which only draws them, along the position that plays. Reads on a
/// thread of its own, which a file that does not answer leaves behind.
class SubtitlePictures {
public:
    /// Is called on that thread when another picture is shown from now on, or none.
    using Show = std::function<void(PlayerSubtitlePicture picture)>;

    SubtitlePictures(PictureTrack track, Show show);
    /// Nothing is shown after that.
    ~SubtitlePictures();
    SubtitlePictures(const SubtitlePictures&) = delete;
    SubtitlePictures& operator=(const SubtitlePictures&) = delete;

    /// Where it plays, in seconds of the subtitles' time.
    void moveTo(double position);

private:
    struct State;

    std::shared_ptr<State> m_state;
};

} // namespace desktop
