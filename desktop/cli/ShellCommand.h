#pragma once

#include "desktop/cli/Output.h"
#include "desktop/host/Host.h"

namespace desktop {

/// The conversation in JSON lines: a command per line on standard input, and on @p output its reply, every notification and
/// every error, each a line. {"desktop":"screen"} asks whether the screen is off; with "off" it is switched. At the end of
/// the input it waits for the answers that are still due. Returns the exit status.
int runShell(Host& host, Output& output, const Interrupts& interrupts);

} // namespace desktop
