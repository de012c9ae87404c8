#pragma once

#include <sys/resource.h>

namespace desktop {

// What the processes that read untrusted files give up, whatever else they need.

/// Ends the process as soon as the other end of the channel is closed.
void endWithTheOtherSide();

/// Gives up the rights of root and of a user namespace; false when it cannot. For a process that has one thread.
bool dropRights();

/// Limits the address space to @p memory bytes and files to @p fileSize bytes, and forbids core dumps; false when it cannot.
bool limitMemoryAndFiles(rlim_t memory, rlim_t fileSize);

} // namespace desktop
