#pragma once

namespace desktop {

/// How a stored picture is turned to be shown: mirrored left to right first, if at all, then turned clockwise.
struct Turn {
    bool mirror = false;
    int quarters = 0; ///< 0 to 3

    bool swapsSides() const { return quarters % 2 != 0; }
    int degrees() const { return quarters * 90; }
};

} // namespace desktop
