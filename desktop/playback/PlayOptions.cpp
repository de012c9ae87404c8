#include "desktop/playback/PlayOptions.h"

#include "desktop/base/Log.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace desktop {

namespace {

using protocol::OptionChoice;
using protocol::OptionDescription;
using protocol::OptionKind;

/// Where the facts of a medium have its tracks of a kind.
struct TrackFacts {
    std::vector<MediaTrack> MediaFacts::*tracks;
    int MediaFacts::*current;
};

constexpr TrackFacts kAudioTracks = {&MediaFacts::audioTracks, &MediaFacts::audioTrack};
constexpr TrackFacts kSubtitleTracks = {&MediaFacts::subtitleTracks, &MediaFacts::subtitleTrack};

} // namespace

/// How an option stands in the options of a player.
struct PlayOptions::Binding {
    std::string_view name;       ///< "option/suboption"
    std::vector<FileType> kinds; ///< whose players have it; of a track, the first of them that plays something
    void (*set)(PlayerOptions& options, int value);
    int (*get)(const PlayerOptions& options);
    const TrackFacts* tracks = nullptr; ///< of a track: what it chooses from
};

namespace {

std::string nameOf(const OptionDescription& option)
{
    return std::string(option.option) + "/" + option.suboption;
}

const OptionDescription* find(const std::string& name)
{
    const auto* const found = std::find_if(protocol::kOptions.begin(), protocol::kOptions.end(),
                                           [&name](const OptionDescription& option) { return nameOf(option) == name; });
    return found != protocol::kOptions.end() ? found : nullptr;
}

const OptionChoice& choice(const char* name, int value)
{
    return find(name)->choices.first[value];
}

// The value whose choice is told by @p matches.
template <typename Matches>
int choiceThat(const char* name, const Matches& matches)
{
    const auto choices = find(name)->choices;
    const auto* const found = std::find_if(choices.begin(), choices.end(), matches);
    return found != choices.end() ? found->value : 0;
}

int percent(double share)
{
    return static_cast<int>(std::lround(share * 100));
}

} // namespace

const std::vector<PlayOptions::Binding>& PlayOptions::bindings()
{
    static const std::vector<FileType> kVideo = {FILE_TYPE_VIDEO};
    static const std::vector<FileType> kSounding = {FILE_TYPE_VIDEO, FILE_TYPE_MUSIC};
    static const std::vector<FileType> kPhoto = {FILE_TYPE_PHOTO};
    static const std::vector<Binding> kBindings = {
        {"audio/track", kSounding, [](PlayerOptions& options, int value) { options.audioTrack = value; },
         [](const PlayerOptions& options) { return options.audioTrack; }, &kAudioTracks},
        {"subtitle/track", kVideo, [](PlayerOptions& options, int value) { options.subtitleTrack = value; },
         [](const PlayerOptions& options) { return options.subtitleTrack; }, &kSubtitleTracks},
        {"subtitle/size", kVideo,
         [](PlayerOptions& options, int value) { options.subtitleScale = choice("subtitle/size", value).means / 100.0; },
         [](const PlayerOptions& options) {
             return choiceThat("subtitle/size",
                               [&](const OptionChoice& size) { return size.means == percent(options.subtitleScale); });
         }},
        {"subtitle/color", kVideo,
         [](PlayerOptions& options, int value) {
             options.subtitleColor = static_cast<std::uint32_t>(choice("subtitle/color", value).means);
         },
         [](const PlayerOptions& options) {
             return choiceThat("subtitle/color", [&](const OptionChoice& color) {
                 return static_cast<std::uint32_t>(color.means) == options.subtitleColor;
             });
         }},
        {"subtitle/position", kVideo, [](PlayerOptions& options, int value) { options.subtitlePosition = value; },
         [](const PlayerOptions& options) { return options.subtitlePosition; }},
        {"subtitle/delay", kVideo, [](PlayerOptions& options, int value) { options.subtitleDelay = value; },
         [](const PlayerOptions& options) { return options.subtitleDelay; }},
        {"subtitle/charset", kVideo,
         [](PlayerOptions& options, int value) {
             options.subtitleCharset = value == 0 ? "" : choice("subtitle/charset", value).name;
         },
         [](const PlayerOptions& options) {
             return choiceThat("subtitle/charset",
                               [&](const OptionChoice& charset) { return charset.name == options.subtitleCharset; });
         }},
        {"photo/zoom", kPhoto, [](PlayerOptions& options, int value) { options.zoom = value / 100.0; },
         [](const PlayerOptions& options) { return percent(options.zoom); }},
        {"playback/speed", kSounding, [](PlayerOptions& options, int value) { options.speed = value / 100.0; },
         [](const PlayerOptions& options) { return percent(options.speed); }},
        {"video/picsize", kVideo,
         [](PlayerOptions& options, int value) { options.pictureSize = static_cast<PictureSize>(value); },
         [](const PlayerOptions& options) { return static_cast<int>(options.pictureSize); }},
    };
    return kBindings;
}

// Null for the interval of the slide show, which is no player's.
const PlayOptions::Binding* PlayOptions::bindingOf(const OptionDescription& option)
{
    const auto found = std::find_if(bindings().begin(), bindings().end(),
                                    [&option](const Binding& binding) { return binding.name == nameOf(option); });
    return found != bindings().end() ? &*found : nullptr;
}

namespace {

bool hasTrack(const MediaFacts& facts, const TrackFacts& kind, int id)
{
    const auto& tracks = facts.*kind.tracks;
    return id == 0 || std::any_of(tracks.begin(), tracks.end(), [id](const MediaTrack& track) { return track.id == id; });
}

Json::Value describeChoices(const OptionDescription& option)
{
    Json::Value choices(Json::arrayValue);
    for (const OptionChoice& choice : option.choices) {
        Json::Value json;
        json["value"] = choice.value;
        json["name"] = choice.name;
        choices.append(json);
    }
    return choices;
}

Json::Value describeTrack(const MediaTrack& track)
{
    Json::Value json;
    json["value"] = track.id;
    json["name"] = track.title;
    json["language"] = track.language;
    json["codec"] = track.codec;
    json["external"] = track.external;
    return json;
}

} // namespace

bool PlayOptions::set(const std::string& option, const std::string& suboption, int value)
{
    const OptionDescription* const description = find(option + "/" + suboption);
    const bool known = description != nullptr;
    const bool inRange = known && (description->kind == OptionKind::Track ||
                                   (value >= description->minimum && value <= description->maximum));
    if (inRange && apply(*description, value)) {
        return true;
    }
    const std::string name = suboption.empty() ? option : option + "/" + suboption;
    logLine(LogLevel::Warning,
            known ? "option " + name + " cannot be " + std::to_string(value) : "there is no option " + name);
    return false;
}

int PlayOptions::value(const std::string& option, const std::string& suboption) const
{
    return valueOf(*find(option + "/" + suboption));
}

void PlayOptions::showSubtitles(bool shown)
{
    m_playback.changeOptions(FILE_TYPE_VIDEO, [shown](PlayerOptions& options, const MediaFacts*) {
        options.subtitles = shown;
        return true;
    });
}

bool PlayOptions::rotatePhoto(bool right)
{
    return m_playback.changeOptions(FILE_TYPE_PHOTO, [right](PlayerOptions& options, const MediaFacts* photo) {
        options.turn = (options.turn + (right ? 90 : 270)) % 360;
        return photo != nullptr;
    });
}

Json::Value PlayOptions::all() const
{
    Json::Value json;
    json["options"] = Json::Value(Json::arrayValue);
    for (const OptionDescription& option : protocol::kOptions) {
        json["options"].append(describe(option));
    }
    json["subtitles"] = m_playback.options(FILE_TYPE_VIDEO).subtitles;
    json["rotation"] = m_playback.options(FILE_TYPE_PHOTO).turn;
    return json;
}

// The value is within its bounds.
bool PlayOptions::apply(const OptionDescription& option, int value)
{
    const Binding* const binding = bindingOf(option);
    if (binding == nullptr) {
        m_slideSeconds = value;
        m_playback.setSlideInterval(std::chrono::seconds(value));
        return true;
    }
    const auto change = [&option, binding, value](PlayerOptions& options, const MediaFacts* facts) {
        const bool isForNone = option.isOfMedium && facts == nullptr;
        if (isForNone || (binding->tracks != nullptr && !hasTrack(*facts, *binding->tracks, value))) {
            return false;
        }
        binding->set(options, value);
        return true;
    };
    bool changed = false;
    for (const FileType kind : binding->kinds) {
        changed = m_playback.changeOptions(kind, change) || changed;
    }
    return changed;
}

int PlayOptions::valueOf(const OptionDescription& option) const
{
    const Binding* const binding = bindingOf(option);
    if (binding == nullptr) {
        return m_slideSeconds;
    }
    const auto playing = playingOf(*binding);
    return binding->get(m_playback.options(playing ? playing->item.kind : binding->kinds.front()));
}

Json::Value PlayOptions::describe(const OptionDescription& option) const
{
    Json::Value json;
    json["option"] = option.option;
    json["suboption"] = option.suboption;
    json["value"] = valueOf(option);
    switch (option.kind) {
    case OptionKind::Range:
        json["minimum"] = option.minimum;
        json["maximum"] = option.maximum;
        json["unit"] = option.unit;
        break;
    case OptionKind::Choice:
        json["choices"] = describeChoices(option);
        break;
    case OptionKind::Track:
        describeTracks(*bindingOf(option), json);
        break;
    }
    return json;
}

void PlayOptions::describeTracks(const Binding& binding, Json::Value& json) const
{
    json["choices"] = Json::Value(Json::arrayValue);
    const auto playing = playingOf(binding);
    json["current"] = playing ? playing->facts.*binding.tracks->current : 0;
    if (playing) {
        for (const MediaTrack& track : playing->facts.*binding.tracks->tracks) {
            json["choices"].append(describeTrack(track));
        }
    }
}

// What plays of the kinds that have the option.
std::optional<CurrentMedium> PlayOptions::playingOf(const Binding& binding) const
{
    std::optional<CurrentMedium> playing;
    for (auto kind = binding.kinds.begin(); !playing && kind != binding.kinds.end(); ++kind) {
        playing = m_playback.current(*kind);
    }
    return playing;
}

} // namespace desktop
