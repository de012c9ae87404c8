#pragma once

#include "desktop/worker/AvInput.h"
#include "desktop/worker/Turn.h"
#include "desktop/workers/MediaMetadata.h"

#include <string>

namespace desktop {

/// Reads from the file @p fd what describes the whole file: length, tags, and the size and turn of its picture. Throws
/// MediaError.
MediaMetadata readStreamMetadata(int fd);

/// The tag @p key of the whole file, as it is stored; empty when there is none.
std::string fileTag(const AvInput& input, const char* key);

/// Whether the header alone says how to decode @p stream and what size it has.
bool isDescribed(const AVStream& stream);

/// How the frames of @p stream are to be turned.
Turn turnOf(const AVStream& stream);

} // namespace desktop
