#pragma once

#include "tests/desktop/support/Jpeg.h"
#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include <cstdint>
#include <stdexcept>

namespace testsupport {

/// A display of 640 x 360 pixels that nobody sees, with an X server of its own.
class Display {
public:
    Display()
    {
        if (!m_server.readUntil([this] { return m_server.output().find('\n') != std::string::npos; })) {
            throw std::runtime_error("no X server: " + m_server.errors());
        }
    }

    /// What DISPLAY is set to for its clients.
    std::string name() const { return ":" + m_server.output().substr(0, m_server.output().find('\n')); }

    /// What is on it now.
    Picture picture() const
    {
        const std::string dump = readFile(m_folder.path("Xvfb_screen0"));
        const auto number = [&dump](std::size_t index) { // of the header, the most significant byte first
            std::uint32_t value = 0;
            for (std::size_t i = 0; i < 4; ++i) {
                value = value << 8 | static_cast<unsigned char>(dump.at(4 * index + i));
            }
            return value;
        };
        constexpr std::size_t kHeaderBytes = 0, kWidth = 4, kHeight = 5, kLineBytes = 12, kColours = 19;
        constexpr std::size_t kColourBytes = 12;
        Picture picture;
        picture.width = static_cast<int>(number(kWidth));
        picture.height = static_cast<int>(number(kHeight));
        const std::size_t points = number(kHeaderBytes) + number(kColours) * kColourBytes;
        for (std::size_t y = 0; y < number(kHeight); ++y) {
            for (std::size_t x = 0; x < number(kWidth); ++x) {
                const std::size_t point = points + y * number(kLineBytes) + x * 4; // blue, green, red
                for (const std::size_t colour : {std::size_t{2}, std::size_t{1}, std::size_t{0}}) {
                    picture.rgb.push_back(static_cast<unsigned char>(dump.at(point + colour)));
                }
            }
        }
        return picture;
    }

    /// Presses key @p key, as X names it.
    void press(const std::string& key) const
    {
        Program program({"env", "DISPLAY=" + name(), "xdotool", "key", key});
        if (program.wait() != 0) {
            throw std::runtime_error("no key: " + program.errors());
        }
    }

private:
    TemporaryDirectory m_folder;
    // Without a reset: the player tries several ways to draw, and a server that begins anew between them refuses the next.
    Program m_server{{"Xvfb", "-displayfd", "1", "-noreset", "-screen", "0", "640x360x24", "-fbdir", m_folder.path(),
                      "-nolisten", "tcp"}};
};

} // namespace testsupport
