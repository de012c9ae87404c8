#pragma once

#include "desktop/cli/Session.h"

#include "desktop/workers/MediaPlayer.h"

#include <optional>

namespace desktop {

struct PlayArguments {
    std::string path;                ///< file, folder or playlist: absolute, or relative to the first stick that has it
    bool all = false;                ///< what follows a file in its folder is played, too
    std::optional<PlayerModeE> mode; ///< the order in which all are played; without one the plugin's own
    bool resume = false;             ///< from where a video was left, without asking
    bool fromStart = false;          ///< from the start, without asking
    std::optional<double> startAt;   ///< seconds from which on the first plays, without asking
    std::optional<bool> window;      ///< nothing: as playerOutputOf() decides
    bool silent = false;
    bool json = false; ///< JSON lines, one a notification
};

/// Where what is played is shown and sounds. Without a wish of the user's there is a window when the computer has a display
/// and the program's output goes to a terminal.
PlayerOutput playerOutputOf(const PlayArguments& options, const Output& output);

/// Plays media until their end, or until the user ends it by a key of the terminal or the window. @p session is one of
/// @p client.
void runPlay(Session& session, HostClient& client, const PlayArguments& options, Output& output,
             const Interrupts& interrupts);

} // namespace desktop
