#pragma once

#include <json/json.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <variant>

namespace desktop {

/// A notification that the plugin has published.
struct Notification {
    std::string source; ///< "storagemedia", or the channel of the request that it answers
    std::string name;
    Json::Value body;
};

/// How many entries of a folder have been read so far.
struct FolderProgress {
    std::string directory;
    std::size_t entries = 0;
};

/// Why a path cannot be read. Comes before the reply or the notification that shows the failure.
struct ReadFailure {
    std::string path;
    std::string reason;
};

/// The screen has been switched.
struct ScreenSwitched {
    bool off = false;
};

/// A key has been pressed in a player's window.
struct KeyPressed {
    std::string key; ///< as mpv names it ("SPACE", "LEFT", "q"); "CLOSE_WIN" for the window's close button
};

/// A request whose answer comes later has come to its end. When it is answered this follows the notification that ends the
/// answer; when it is not, another request or a command has ended it, and no answer comes.
struct RequestEnded {
    std::uint64_t number = 0; ///< as in the request's CommandReply
    std::string command;
    std::string channel; ///< "channelId" of the request
    std::string reqId;   ///< "reqId" of the request
    bool answered = false;
};

/// What a host has for its subscribers. It is shared by all of them, so it never changes.
using HostUpdate = std::variant<Notification, FolderProgress, ReadFailure, ScreenSwitched, KeyPressed, RequestEnded>;
using HostUpdatePointer = std::shared_ptr<const HostUpdate>;

} // namespace desktop
