#include "desktop/cli/PlayKeys.h"

#include "desktop/cli/TextColumns.h"

#include <algorithm>
#include <array>
#include <utility>

namespace desktop {

namespace {

constexpr const char* kPlayOrPause = "storagemedia.button.playOrpause";
constexpr const char* kSetOption = "storagemedia.option.set";
constexpr const char* kSwitchSubtitles = "storagemedia.substitle.switch";
constexpr const char* kGetOptions = "storagemedia.folder.getcuroptions";

constexpr int kSpeedStep = 10; // percent

/// What a key means for media that move, and for photos.
struct KeyRow {
    const char* key;
    std::optional<PlayAction> moving;
    std::optional<PlayAction> photo;
};

const std::array<KeyRow, 22> kKeys = {{
    {"SPACE", PlayAction::PlayOrPause, PlayAction::PlayOrPause},
    {"p", PlayAction::PlayOrPause, PlayAction::PlayOrPause},
    {"LEFT", PlayAction::Rewind, PlayAction::Previous},
    {"RIGHT", PlayAction::FastForward, PlayAction::Next},
    {"<", PlayAction::Previous, PlayAction::Previous},
    {",", PlayAction::Previous, PlayAction::Previous},
    {">", PlayAction::Next, PlayAction::Next},
    {".", PlayAction::Next, PlayAction::Next},
    {"ENTER", PlayAction::Next, PlayAction::Next},
    {"[", PlayAction::Slower, std::nullopt},
    {"]", PlayAction::Faster, std::nullopt},
    {"j", PlayAction::NextSubtitle, std::nullopt},
    {"J", PlayAction::PreviousSubtitle, std::nullopt},
    {"#", PlayAction::NextSound, std::nullopt},
    {"SHARP", PlayAction::NextSound, std::nullopt},
    {"r", std::nullopt, PlayAction::TurnRight},
    {"s", PlayAction::TakePicture, PlayAction::TakePicture},
    {"h", PlayAction::Help, PlayAction::Help},
    {"?", PlayAction::Help, PlayAction::Help},
    {"q", PlayAction::Quit, PlayAction::Quit},
    {"Q", PlayAction::Quit, PlayAction::Quit},
    {"CLOSE_WIN", PlayAction::Quit, PlayAction::Quit},
}};

/// What the plugin tells of option @p option / @p suboption, in its answer @p all; null when it tells nothing.
Json::Value optionIn(const Json::Value& all, const char* option, const char* suboption)
{
    for (const Json::Value& told : all["options"]) {
        if (told["option"] == option && told["suboption"] == suboption) {
            return told;
        }
    }
    return {};
}

/// The tracks of sound or subtitles that a medium has. Places count from 1; place 0 is none of them.
class Tracks {
public:
    /// @p option: what the plugin tells of the option that chooses among them.
    explicit Tracks(Json::Value option)
        : m_option(std::move(option))
    {
    }

    Json::ArrayIndex count() const { return m_option["choices"].size(); }
    /// Of the track that has been chosen, which may not play yet; else of the one that plays.
    Json::ArrayIndex place() const
    {
        const int chosen = m_option["value"].asInt();
        const int number = chosen != 0 ? chosen : m_option["current"].asInt();
        Json::ArrayIndex place = count();
        while (place > 0 && numberAt(place) != number) {
            --place;
        }
        return place;
    }
    /// What the option is set to for the track at @p place.
    int numberAt(Json::ArrayIndex place) const { return at(place)["value"].asInt(); }
    /// "eng, Commentary", "track 2" or "off".
    std::string nameAt(Json::ArrayIndex place) const
    {
        if (place == 0) {
            return "off";
        }
        const std::string title = at(place)["name"].asString();
        std::string name = at(place)["language"].asString();
        name += (name.empty() || title.empty() ? "" : ", ") + title;
        return name.empty() ? "track " + std::to_string(numberAt(place)) : visibleText(name);
    }

private:
    const Json::Value& at(Json::ArrayIndex place) const { return m_option["choices"][place - 1]; }

    const Json::Value m_option;
};

} // namespace

std::optional<PlayAction> playActionOf(const std::string& key, FileType kind)
{
    const auto* const row =
        std::find_if(kKeys.begin(), kKeys.end(), [&key](const KeyRow& known) { return key == known.key; });
    if (row == kKeys.end()) {
        return std::nullopt;
    }
    return kind == FILE_TYPE_PHOTO ? row->photo : row->moving;
}

std::string playKeysHelp(FileType kind)
{
    if (kind == FILE_TYPE_PHOTO) {
        return "space pause, right/left next/previous, r turn right, s picture of the screen, q quit";
    }
    return "space pause, right/left wind, > < next/previous, ] [ faster/slower, j J subtitles, # sound, "
           "s picture of the screen, q quit";
}

PlayKeys::PlayKeys(FileType kind, Execute execute)
    : m_kind(kind)
    , m_execute(std::move(execute))
{
}

std::string PlayKeys::press(PlayAction action, int speed)
{
    switch (action) {
    case PlayAction::PlayOrPause: {
        Json::Value request;
        request["type"] = m_kind;
        request["play"] = speed != 1;
        return send(kPlayOrPause, request) ? "" : "It cannot be paused now";
    }
    case PlayAction::Rewind:
        return sendButton("fastrewind") ? "" : "It cannot be wound back now";
    case PlayAction::FastForward:
        return sendButton("fastforward") ? "" : "It cannot be wound on now";
    case PlayAction::Previous:
        return sendButton("prev") ? "" : "There is none before";
    case PlayAction::Next:
        return sendButton("next") ? "" : "There is none after it";
    case PlayAction::Slower:
        return changeSpeed(-kSpeedStep);
    case PlayAction::Faster:
        return changeSpeed(kSpeedStep);
    case PlayAction::NextSubtitle:
        return nextSubtitle(1);
    case PlayAction::PreviousSubtitle:
        return nextSubtitle(-1);
    case PlayAction::NextSound:
        return nextSound();
    case PlayAction::TurnRight: {
        Json::Value request;
        request["rotate"] = true;
        return send("storagemedia.photo.rotate", request) ? "" : "It cannot be turned now";
    }
    case PlayAction::TakePicture:
    case PlayAction::Help:
    case PlayAction::Quit:
        break; // not the plugin's
    }
    return "";
}

bool PlayKeys::send(const std::string& command, Json::Value request)
{
    Json::Value ignored;
    return m_execute(command, request, ignored);
}

bool PlayKeys::sendButton(const char* button)
{
    Json::Value request;
    request["type"] = m_kind;
    return send(std::string("storagemedia.button.") + button, request);
}

std::string PlayKeys::changeSpeed(int by)
{
    const Json::Value option = optionIn(allOptions(), "playback", "speed");
    const int percent = std::clamp(option["value"].asInt() + by, option["minimum"].asInt(), option["maximum"].asInt());
    return setOption("playback", "speed", percent) ? "Speed " + std::to_string(percent) + " %"
                                                   : "Its speed cannot be changed";
}

std::string PlayKeys::nextSound()
{
    const Tracks sound(optionIn(allOptions(), "audio", "track"));
    if (sound.count() < 2) {
        return "There is no other sound";
    }
    const Json::ArrayIndex place = sound.place() % sound.count() + 1;
    return setOption("audio", "track", sound.numberAt(place)) ? "Sound: " + sound.nameAt(place)
                                                              : "The sound cannot be changed";
}

// In a circle: off, and then each track.
std::string PlayKeys::nextSubtitle(int step)
{
    const Json::Value all = allOptions();
    const Tracks subtitles(optionIn(all, "subtitle", "track"));
    if (subtitles.count() == 0) {
        return "There are no subtitles";
    }
    const Json::ArrayIndex places = subtitles.count() + 1;
    const Json::ArrayIndex now = all["subtitles"].asBool() ? subtitles.place() : 0;
    const Json::ArrayIndex next = (now + (step > 0 ? 1 : places - 1)) % places;
    Json::Value shown;
    shown["value"] = next > 0 ? 1 : 0;
    const bool set =
        (next == 0 || setOption("subtitle", "track", subtitles.numberAt(next))) && send(kSwitchSubtitles, shown);
    m_subtitlesAreShown = set ? next > 0 : m_subtitlesAreShown;
    return set ? "Subtitles: " + subtitles.nameAt(next) : "The subtitles cannot be changed";
}

Json::Value PlayKeys::allOptions()
{
    Json::Value options;
    m_execute(kGetOptions, Json::Value(Json::objectValue), options);
    return options;
}

bool PlayKeys::setOption(const char* option, const char* suboption, int value)
{
    Json::Value request;
    request["option"] = option;
    request["suboption"] = suboption;
    request["value"] = value;
    return send(kSetOption, request);
}

} // namespace desktop
