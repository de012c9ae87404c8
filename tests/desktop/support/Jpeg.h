#pragma once

#include <string>
#include <vector>

namespace testsupport {

/// A picture in memory, to look at or to make a file of.
struct Picture {
    int width = 0;  ///< 0: there is none
    int height = 0; ///< pixels
    std::vector<unsigned char> rgb;

    /// "red", "green", "blue", "white" or "other": the colour of the point at these parts, 0 to 1, of the sides.
    std::string colourAt(double x, double y) const;
};

/// The picture in the JPEG file @p bytes; none when they are no whole one.
Picture decodeJpeg(const std::string& bytes);
Picture readJpeg(const std::string& file);

/// A JPEG file of four fields: red, green above blue, white; with the EXIF orientation @p orientation.
std::string fourFieldsJpeg(int width, int height, int orientation);

std::string readFile(const std::string& file);
void writeFile(const std::string& file, const std::string& bytes);

} // namespace testsupport
