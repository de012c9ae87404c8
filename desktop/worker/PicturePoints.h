#pragma once

#include "desktop/worker/PictureSource.h"

#include <cstddef>
#include <vector>

namespace desktop {

/// Points of three bytes, line after line without gaps.
struct Points {
    PixelSize size;
    std::vector<unsigned char> bytes;

    explicit Points(PixelSize pictureSize)
        : size(pictureSize)
        , bytes(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) * kColours)
    {
    }
    unsigned char* at(int x, int y)
    {
        return bytes.data() +
               (static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width) + static_cast<std::size_t>(x)) * kColours;
    }
};

/// @p picture as it is to be shown: turned, with square points, made to fit into @p bound and never enlarged. Throws
/// MediaError.
Points shownPoints(const Picture& picture, PixelSize bound);

} // namespace desktop
