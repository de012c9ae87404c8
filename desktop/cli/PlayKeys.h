#pragma once

#include "platform/SocMwTypes.h"

#include <json/json.h>

#include <functional>
#include <optional>
#include <string>

namespace desktop {

/// What a person can want while something plays.
enum class PlayAction {
    PlayOrPause,
    Rewind,
    FastForward,
    Previous,
    Next,
    Slower,
    Faster,
    NextSubtitle,
    PreviousSubtitle,
    NextSound,
    TurnRight,
    TakePicture,
    Help,
    Quit,
};

/// What key @p key, as mpv names it, of a terminal or a window means while a medium of kind @p kind plays; nothing when it
/// means nothing.
std::optional<PlayAction> playActionOf(const std::string& key, FileType kind);

/// One line that says what the keys do while a medium of kind @p kind plays.
std::string playKeysHelp(FileType kind);

/// Sends what the keys mean to the plugin.
class PlayKeys {
public:
    /// Runs a command of the plugin; false when it fails.
    using Execute = std::function<bool(const std::string& command, const Json::Value& request, Json::Value& reply)>;

    /// @p kind: photo, video or music.
    PlayKeys(FileType kind, Execute execute);

    /// Does @p action, one that the plugin has a command for; @p speed is the one at which the medium plays now, 0 when it
    /// is paused. Returns what is to be told about it; may be empty; safe for a terminal.
    std::string press(PlayAction action, int speed);
    /// Whether subtitles are shown, as far as the keys have chosen.
    bool subtitlesAreShown() const { return m_subtitlesAreShown; }

private:
    bool send(const std::string& command, Json::Value request = Json::Value(Json::objectValue));
    bool sendButton(const char* button);
    std::string changeSpeed(int by);
    std::string nextSound();
    std::string nextSubtitle(int step);
    Json::Value allOptions();
    bool setOption(const char* option, const char* suboption, int value);

    const FileType m_kind;
    const Execute m_execute;
    bool m_subtitlesAreShown = true;
};

} // namespace desktop
