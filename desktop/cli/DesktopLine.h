#pragma once

#include "desktop/host/Host.h"

#include <json/json.h>

#include <string>
#include <vector>

namespace desktop {

/// What is wrong with @p line, an object with the member "desktop": what the shell is told for the desktop itself. Empty
/// when nothing is.
std::string faultOfDesktopLine(const Json::Value& line);

/// Does what @p line, one without fault, asks for. Returns the line that answers it, an error with the member "error"; null
/// when the answer is the update that it leads to.
Json::Value runDesktopLine(Host& host, const Json::Value& line);

/// The names of the set's keys that can be pressed.
std::vector<std::string> setKeyNames();

/// The line that tells whether the screen is off.
Json::Value screenLine(bool off);

} // namespace desktop
