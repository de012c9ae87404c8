#pragma once

#include "desktop/base/UniqueFd.h"
#include "desktop/workers/MediaMetadata.h"

#include <json/json.h>

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace desktop {

// The wire between the desktop and a media worker: a socket that keeps messages whole and carries open files. A request is
// an object with "job", "metadata", "thumbnail" or "playlist", and "type", a FileType; the file comes with it. A thumbnail's
// has "width" and "height" too, the bounds in pixels, and a second file that takes the picture; a playlist's has
// "extension", and a second file that takes the entries (PlaylistTransfer.h). The answer holds the metadata, how many
// "entries" the playlist has, or "error".

/// The descriptor under which a worker finds its end of the wire.
constexpr int kWorkerChannel = 3;

/// One message and the files that came with it.
struct WorkerMessage {
    Json::Value body{Json::objectValue};
    std::vector<UniqueFd> files;
};

/// Sends @p body with copies of @p files; false when nobody is at the other end.
bool sendMessage(int channel, const Json::Value& body, std::initializer_list<int> files = {});

/// Waits for the next message; nothing at the end of the other side, or when what comes is no message.
std::optional<WorkerMessage> receiveMessage(int channel);

/// The text @p json on one line, at most 1,000 bytes; empty when it is none, or no UTF-8.
std::string textFromJson(const Json::Value& json);

/// Empty texts and lists, and zeros, are left out.
Json::Value toJson(const MediaMetadata& metadata);
/// Members of @p json that are missing, of another type or not as MediaMetadata has them leave theirs empty. Texts are put
/// on one line and cut to 1,000 bytes, lists to 30 values. An error stays one, whatever its text.
MediaMetadata metadataFromJson(const Json::Value& json);

} // namespace desktop
