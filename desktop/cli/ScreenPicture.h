#pragma once

#include "desktop/host/Host.h"

#include <string>

namespace desktop {

/// How large a picture of the screen may be asked for, in pixels.
constexpr int kLeastScreenSide = 16;
constexpr int kGreatestScreenWidth = 3840;
constexpr int kGreatestScreenHeight = 2160;
constexpr int kUsualScreenWidth = 1280;
constexpr int kUsualScreenHeight = 720;

/// Writes what the screen of @p host shows now, @p width x @p height pixels large, as a JPEG to @p file, a path as bytes; a
/// screen that is off or shows nothing is black. The file is there whole or not at all, and takes the place of an ordinary
/// file alone. Waits for two seconds at most for the picture. Returns 0, or why it failed as an errno value.
int writeScreenPicture(Host& host, int width, int height, const std::string& file);

} // namespace desktop
