#pragma once

#include "tests/desktop/support/Jpeg.h"
#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace testsupport {

/// Runs ffmpeg with @p arguments, words that make a file.
inline void runFfmpeg(const std::string& arguments)
{
    std::vector<std::string> command = {"ffmpeg", "-nostdin", "-v", "error", "-y"};
    std::istringstream words(arguments);
    for (std::string word; words >> word;) {
        command.push_back(word);
    }
    Program make(command);
    if (make.wait() != 0) {
        throw std::runtime_error("ffmpeg: " + make.errors());
    }
}

/// Media files that a test has ffmpeg make, in a folder of their own.
class Films {
public:
    /// The file @p name with ffmpeg's @p arguments before the name.
    std::string make(const std::string& name, const std::string& arguments) const
    {
        runFfmpeg(arguments + " " + path(name));
        return path(name);
    }
    /// A video of @p seconds of four fields, red, green above blue, white, with a tone; @p arguments are of its coding.
    std::string video(const std::string& name, int seconds, const std::string& arguments = kH264) const
    {
        writeFile(path("fields.jpg"), fourFieldsJpeg(320, 180, 1));
        const std::string length = std::to_string(seconds);
        return make(name, "-loop 1 -r 25 -t " + length + " -i " + path("fields.jpg") +
                              " -f lavfi -i sine=frequency=440:duration=" + length + " " + arguments);
    }
    std::string write(const std::string& name, const std::string& bytes) const
    {
        writeFile(path(name), bytes);
        return path(name);
    }
    std::string path(const std::string& name) const { return m_folder.path(name); }

    static constexpr const char* kH264 = "-c:v libx264 -preset ultrafast -g 25 -pix_fmt yuv420p -threads 1 -c:a aac";

private:
    TemporaryDirectory m_folder;
};

} // namespace testsupport
