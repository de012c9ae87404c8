#pragma once

#include "desktop/cli/HostClient.h"
#include "desktop/cli/Output.h"

namespace desktop {

/// The conversation in JSON lines: a command per line on standard input, and on @p output its reply, every notification and
/// every error, each a line. {"desktop":"screen"} asks whether the screen is off; with "off" it is switched. At the end of
/// the input it waits for the answers that are still due. Returns the exit status.
int runShell(HostClient& client, Output& output, const Interrupts& interrupts);

} // namespace desktop
