#pragma once

#include "desktop/worker/AvInput.h"
#include "desktop/worker/Turn.h"
#include "desktop/workers/MediaMetadata.h"

namespace desktop {

/// Reads from @p input what describes the whole file: length, tags, and the size and turn of its picture. Throws MediaError.
MediaMetadata readStreamMetadata(AvInput& input);

/// Whether the header alone says how to decode @p stream and what size it has.
bool isDescribed(const AVStream& stream);

/// How the frames of @p stream are to be turned.
Turn turnOf(const AVStream& stream);

} // namespace desktop
