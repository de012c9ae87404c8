#pragma once

#include "desktop/player/Mpv.h"
#include "desktop/workers/MediaPlayer.h"

namespace desktop {

/// What holds for all that is played. Throws std::runtime_error.
void setUp(const Mpv& mpv, const PlayerOutput& output);

/// Sends the keys of mpv's window to this program, as messages "key" and the key's name.
void bindKeys(const Mpv& mpv);

/// How the picture is to be turned.
struct PictureTurn {
    bool mirrored = false; ///< left to right, first
    int degrees = 0;       ///< clockwise

    bool operator==(const PictureTurn& other) const = default;
};

void applyTurn(const Mpv& mpv, PictureTurn turn);

/// Applies @p options, but for the tracks and the turn, to what plays. @p isPhoto and @p sidesSwap, by its turn, say how
/// they count.
void applyOptions(const Mpv& mpv, const PlayerOptions& options, bool isPhoto, bool sidesSwap);

} // namespace desktop
