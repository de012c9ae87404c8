#pragma once

#include "desktop/player/FrameDrawer.h"
#include "desktop/player/Mpv.h"

namespace desktop {

/// Draws what mpv's own window shows, made to fit, with black bars around it; false when it shows nothing.
bool drawWindow(const Mpv& mpv, const FrameOrder& order);

} // namespace desktop
