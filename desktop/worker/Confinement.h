#pragma once

#include <string>

namespace desktop {

/// Takes from this process what an untrusted media file could misuse: open files other than the channel, the rights of root
/// and of a user namespace, memory, core dumps, and every system call but those that reading and decoding need, of which
/// none takes a path or signals or inspects another process. Also ends the process as soon as the other end of the channel
/// is closed. Returns what could not be done, and no file must be read then; empty when all was.
std::string confine();

/// Gives the work that begins now its share of processor time; work that uses it up ends the process.
void renewProcessorTime();

} // namespace desktop
