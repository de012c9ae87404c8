#pragma once

#include "tests/desktop/support/Jpeg.h"
#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace testsupport {

/// A display of 1280 x 720 points in memory, which programs that are started meanwhile show their windows on.
class Display {
public:
    Display()
        : m_server({"Xvfb", "-displayfd", "1", "-screen", "0", "1280x720x24", "-fbdir", m_folder.path(), "-nolisten", "tcp",
                    "-ac"})
    {
        m_works = m_server.readUntil([this] { return m_server.output().find('\n') != std::string::npos; });
        const std::string number = m_server.output().substr(0, m_server.output().find('\n'));
        setenv("DISPLAY", (":" + number).c_str(), 1);
        unsetenv("XAUTHORITY");
    }
    ~Display() { unsetenv("DISPLAY"); }
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;

    bool works() const { return m_works; }

    /// What is on it: the server keeps it in a file, a header of big-endian numbers, colours, then points of four bytes.
    Picture picture() const
    {
        const std::string file = readFile(m_folder.path("Xvfb_screen0"));
        const auto number = [&file](std::size_t index) {
            std::uint32_t value = 0;
            for (std::size_t i = 0; i < 4; ++i) {
                value = value << 8U | static_cast<unsigned char>(file.at(4 * index + i));
            }
            return value;
        };
        constexpr std::size_t kHeader = 0, kWidth = 4, kHeight = 5, kPitch = 12, kColors = 19, kBytesOfColor = 12;
        Picture picture;
        picture.width = static_cast<int>(number(kWidth));
        picture.height = static_cast<int>(number(kHeight));
        const std::size_t begin = number(kHeader) + number(kColors) * kBytesOfColor;
        for (std::size_t y = 0; y < number(kHeight); ++y) {
            for (std::size_t x = 0; x < number(kWidth); ++x) {
                const std::size_t point = begin + y * number(kPitch) + x * 4;
                for (const std::size_t color : {2U, 1U, 0U}) {
                    picture.rgb.push_back(static_cast<unsigned char>(file.at(point + color)));
                }
            }
        }
        return picture;
    }

    /// Runs xdotool on the window called @p title with the words @p actions; false when it fails.
    static bool act(const std::string& title, const std::vector<std::string>& actions)
    {
        std::vector<std::string> command = {"xdotool", "search", "--sync", "--onlyvisible", "--name", title};
        command.insert(command.end(), actions.begin(), actions.end());
        return Program(command).wait() == 0;
    }

private:
    TemporaryDirectory m_folder;
    Program m_server;
    bool m_works = false;
};

} // namespace testsupport
