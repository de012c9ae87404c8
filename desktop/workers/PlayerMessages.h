#pragma once

#include "desktop/workers/MediaPlayer.h"

#include <json/json.h>

#include <optional>

namespace desktop {

// The wire between the desktop and a player's process (see WorkerChannel.h). To the process, "do" says what, and "medium"
// for which one:
//
//     subtitle   one file, or two, that the next medium has beside it: "name", "language"
//     load       the medium's file: "type", "start", "paused", "options"
//     unload
//     pause      "paused"
//     wind       "speed"
//     seek       "seconds"
//     options    "options"
//     frame      a file in memory that takes the picture: "width", "height", and "frame", its number
//
// From it, "tell" says what: the events of MediaPlayer.h, and
//
//     beat       that it is at work, every half second and after every command but a frame, which is answered
//     closed     that it has nothing open any more of "medium"
//     frame      that the picture "frame" is drawn; "empty": that there is none

Json::Value toJson(const PlayerOptions& options);
/// Members that are missing or out of their range have their usual values.
PlayerOptions optionsFromJson(const Json::Value& json);

/// As a message; the PNG of a picture subtitle goes beside it, in a file. What is too long for a message is cut.
Json::Value toJson(const PlayerEvent& event);
/// What the message @p json tells; nothing when it is no event. It is no more to be trusted than the file that plays: texts
/// are UTF-8 and of bounded length, numbers finite and within their ranges. A picture subtitle comes without its PNG.
std::optional<PlayerEvent> eventFromJson(const Json::Value& json);

/// Seconds from @p json: 0 when it is no number, none or more than anyone has.
double secondsFromJson(const Json::Value& json);
/// The whole number @p json when it lies from @p least to @p most; else @p otherwise.
int numberFromJson(const Json::Value& json, int least, int most, int otherwise = 0);

} // namespace desktop
