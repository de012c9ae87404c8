#pragma once

#include "desktop/playback/Playback.h"

#include "protocol/OptionTable.h"

#include <json/json.h>

namespace desktop {

/// The options of playback under the names and values that requests have for them. What is set for one
/// medium has its first value again with the next. Operations are called on the command thread.
class PlayOptions {
public:
    /// @p playback outlives this object.
    explicit PlayOptions(Playback& playback)
        : m_playback(playback)
    {
    }

    /// Sets an option; false, which is logged, when there is none of that name, the value is not one of its values, or
    /// it is for one medium and none plays, or none that has such a track.
    bool set(const std::string& option, const std::string& suboption, int value);
    /// The value of an option that there is.
    int value(const std::string& option, const std::string& suboption) const;
    /// Shows subtitles or not.
    void showSubtitles(bool shown);
    /// Turns the photo that is shown by a quarter; false when none is.
    bool rotatePhoto(bool right);

    /// All options, their choices and their values: {"options": [{"option", "suboption", "value", and "choices" or
    /// "minimum", "maximum", "unit"}], "subtitles": whether they are shown, "rotation": of the photo, in degrees}. A choice
    /// has "value" and "name", one of a track "language", "codec" and "external" too; "current" is the track that plays.
    Json::Value all() const;

private:
    struct Binding;

    static const std::vector<Binding>& bindings();
    static const Binding* bindingOf(const protocol::OptionDescription& option);
    bool apply(const protocol::OptionDescription& option, int value);
    int valueOf(const protocol::OptionDescription& option) const;
    Json::Value describe(const protocol::OptionDescription& option) const;
    void describeTracks(const Binding& binding, Json::Value& json) const;
    std::optional<CurrentMedium> playingOf(const Binding& binding) const;

    Playback& m_playback;
    int m_slideSeconds = 5;
};

} // namespace desktop
