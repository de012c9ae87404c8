#pragma once

#include <string>

namespace testsupport {

/// What a HEIC photo says of its picture.
struct HeicForm {
    unsigned int width = 512;  ///< pixels, before it is turned
    unsigned int height = 512; ///< pixels
    int anticlockwise = 0;     ///< quarters that the file turns it by
    bool mirrored = false;     ///< left to right, before that
    bool smaller = false;      ///< whether a version of 256 x 256 white points is in the file, too
    unsigned int gridSide = 0; ///< pixels that the grid claims, unlike the photo; 0: it claims the same
    std::string xmp = "";      ///< the packet of XMP; empty: there is none
};

/// A HEIC photo as telephones make it: a grid of 2 x 2 tiles of 256 x 256 points, red, green above blue, white, cut to the
/// form's size. Its EXIF data have the date 2024:05:01 12:00:02 and say to turn it by a quarter, which nobody is to heed.
std::string gridHeic(const HeicForm& form);

} // namespace testsupport
