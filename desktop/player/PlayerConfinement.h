#pragma once

#include "desktop/workers/MediaPlayer.h"

#include <string>

namespace desktop {

/// Takes from this process what an untrusted medium could misuse: open files other than the channel, rights, memory, core
/// dumps, every file but the system's own that playing needs, network and other processes. @p output says what the window
/// and the sound need besides. Also ends the process as soon as the other end of the channel is closed. Call it before there
/// is a second thread. Returns what could not be done, and nothing must be played then; empty when all was.
std::string confinePlayer(const PlayerOutput& output);

} // namespace desktop
