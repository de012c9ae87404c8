#pragma once

#include "desktop/cli/HostClient.h"
#include "desktop/cli/Output.h"
#include "desktop/cli/StandardStreams.h"

namespace desktop {

/// The conversation in JSON lines: a command per line on standard input, and on @p output its reply, every notification and
/// every error, each a line. {"desktop":"screen"} asks whether the screen is off; with "off" it is switched. At the end of
/// the input it waits for the answers that are still due. On a terminal the lines are edited, names and keys completed, and
/// "help" and the name of a command may be typed as plain words; @p log, if it goes to a terminal, stands above the line.
/// Returns the exit status.
int runShell(HostClient& client, Output& output, const Interrupts& interrupts, LogOutput& log);

} // namespace desktop
