#pragma once

#include "tests/desktop/support/Program.h"

#include <stdexcept>

namespace testsupport {

/// The file @p below of the demo stick, which is made when it is not there yet.
inline std::string demoFile(const std::string& below)
{
    static const std::string stick = [] {
        Program make({MAKE_DEMO_STICK, DEMO_STICK});
        if (make.wait() != 0) {
            throw std::runtime_error("no demo stick: " + make.errors());
        }
        return std::string(DEMO_STICK);
    }();
    return stick + "/" + below;
}

} // namespace testsupport
