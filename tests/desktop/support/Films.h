#pragma once

#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace testsupport {

/// Runs ffmpeg with @p arguments, which make a file.
inline void runFfmpeg(const std::vector<std::string>& arguments)
{
    std::vector<std::string> command = {"ffmpeg", "-nostdin", "-v", "error", "-y"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    Program make(command);
    if (make.wait() != 0) {
        throw std::runtime_error("ffmpeg: " + make.errors());
    }
}

/// The words of @p text.
inline std::vector<std::string> wordsOf(const std::string& text)
{
    std::vector<std::string> words(1);
    for (const char c : text) {
        if (c == ' ') {
            words.emplace_back();
        } else {
            words.back() += c;
        }
    }
    return words;
}

} // namespace testsupport
