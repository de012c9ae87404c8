#pragma once

#include "desktop/worker/AvInput.h"
#include "desktop/worker/Turn.h"

#include "platform/SocMwTypes.h"

namespace desktop {

/// Width and height in pixels.
struct PixelSize {
    int width = 0;
    int height = 0;
};

/// @p picture made to fit into @p bound, its shape kept; never enlarged, never empty.
PixelSize fitInto(PixelSize picture, PixelSize bound);

constexpr int kColours = 3; ///< bytes of a point: red, green, blue

/// A frame of such points.
FramePointer makeFrame(PixelSize size);

/// A picture as it is stored, and how to show it.
struct Picture {
    FramePointer frame;
    Turn turn;
};

/// The picture that stands for the file @p fd of kind @p type: the photo itself, the cover of music, the cover of a video
/// or a frame a little way into it. It may be smaller than it is stored, but not smaller than a thumbnail within @p bound.
/// Throws MediaError.
Picture readPicture(int fd, FileType type, PixelSize bound);

} // namespace desktop
