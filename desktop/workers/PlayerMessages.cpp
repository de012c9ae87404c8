#include "desktop/workers/PlayerMessages.h"

#include "desktop/text/Utf8.h"
#include "desktop/workers/WorkerChannel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace desktop {

namespace {

constexpr int kMost = std::numeric_limits<int>::max();
constexpr int kMaxSide = 65535;            // pixels
constexpr double kMaxSeconds = 1e9;        // thirty years
constexpr int kMaxDelay = 60'000;          // milliseconds
constexpr std::size_t kMaxTracks = 32;     // of a kind
constexpr std::size_t kMaxName = 200;      // bytes, of a track or of what it is coded with
constexpr std::size_t kMaxSubtitle = 4000; // bytes
constexpr std::size_t kMaxTag = 500;       // bytes, of which a message may need three for each
constexpr std::size_t kMaxKey = 32;        // bytes

double realFromJson(const Json::Value& json, double least, double most, double otherwise)
{
    const double number = json.isNumeric() ? json.asDouble() : otherwise;
    return std::isfinite(number) && number >= least && number <= most ? number : otherwise;
}

bool flagFromJson(const Json::Value& json)
{
    return json.isBool() && json.asBool();
}

std::string shortened(std::string text, std::size_t most)
{
    cutUtf8(text, most);
    return text;
}

std::string nameFromJson(const Json::Value& json, std::size_t most = kMaxName)
{
    return shortened(textFromJson(json), most);
}

struct TagMember {
    const char* key;
    std::string MediaFacts::*member;
};
constexpr std::array kTags = {TagMember{"title", &MediaFacts::title}, TagMember{"artist", &MediaFacts::artist},
                              TagMember{"album", &MediaFacts::album}, TagMember{"date", &MediaFacts::date}};

struct FlagMember {
    const char* key;
    bool MediaFacts::*member;
};
constexpr std::array kFlags = {FlagMember{"audioUnsupported", &MediaFacts::audioUnsupported},
                               FlagMember{"videoUnsupported", &MediaFacts::videoUnsupported}};

Json::Value toJson(const VideoFacts& video)
{
    Json::Value json(Json::objectValue);
    json["codec"] = shortened(video.codec, kMaxName);
    json["profile"] = shortened(video.profile, kMaxName);
    json["level"] = shortened(video.level, kMaxName);
    json["width"] = video.width;
    json["height"] = video.height;
    json["rate"] = video.frameRate;
    json["hdr"] = video.hdr;
    return json;
}

VideoFacts videoFromJson(const Json::Value& json)
{
    constexpr double kMaxRate = 1000;
    VideoFacts video;
    video.codec = nameFromJson(json["codec"]);
    video.profile = nameFromJson(json["profile"]);
    video.level = nameFromJson(json["level"]);
    video.width = numberFromJson(json["width"], 0, kMaxSide);
    video.height = numberFromJson(json["height"], 0, kMaxSide);
    video.frameRate = realFromJson(json["rate"], 0, kMaxRate, 0);
    video.hdr = flagFromJson(json["hdr"]);
    return video;
}

Json::Value toJson(const AudioFacts& audio)
{
    Json::Value json(Json::objectValue);
    json["codec"] = shortened(audio.codec, kMaxName);
    json["profile"] = shortened(audio.profile, kMaxName);
    json["level"] = shortened(audio.level, kMaxName);
    json["channels"] = audio.channels;
    json["sampleRate"] = audio.sampleRate;
    json["bitRate"] = audio.bitRate;
    return json;
}

AudioFacts audioFromJson(const Json::Value& json)
{
    constexpr int kMaxChannels = 1024;
    AudioFacts audio;
    audio.codec = nameFromJson(json["codec"]);
    audio.profile = nameFromJson(json["profile"]);
    audio.level = nameFromJson(json["level"]);
    audio.channels = numberFromJson(json["channels"], 0, kMaxChannels);
    audio.sampleRate = numberFromJson(json["sampleRate"], 0, kMost);
    audio.bitRate = numberFromJson(json["bitRate"], 0, kMost);
    return audio;
}

Json::Value toJson(const std::vector<MediaTrack>& tracks)
{
    Json::Value json(Json::arrayValue);
    for (const MediaTrack& track : tracks) {
        if (json.size() == kMaxTracks) {
            break;
        }
        Json::Value& entry = json.append(Json::objectValue);
        entry["id"] = track.id;
        entry["title"] = shortened(track.title, kMaxName);
        entry["language"] = shortened(track.language, kMaxKey);
        entry["codec"] = shortened(track.codec, kMaxKey);
        entry["external"] = track.external;
    }
    return json;
}

std::vector<MediaTrack> tracksFromJson(const Json::Value& json)
{
    std::vector<MediaTrack> tracks;
    for (Json::ArrayIndex i = 0; json.isArray() && i < json.size() && i < kMaxTracks; ++i) {
        const Json::Value& entry = json[i];
        const int id = entry.isObject() ? numberFromJson(entry["id"], 1, kMost) : 0;
        if (id > 0) {
            tracks.push_back({id, nameFromJson(entry["title"]), nameFromJson(entry["language"], kMaxKey),
                              nameFromJson(entry["codec"], kMaxKey), flagFromJson(entry["external"])});
        }
    }
    return tracks;
}

Json::Value toJson(const MediaFacts& facts)
{
    Json::Value json(Json::objectValue);
    json["duration"] = facts.duration;
    for (const TagMember& tag : kTags) {
        json[tag.key] = shortened(facts.*tag.member, kMaxTag);
    }
    for (const FlagMember& flag : kFlags) {
        json[flag.key] = facts.*flag.member;
    }
    json["video"] = toJson(facts.video);
    json["audio"] = toJson(facts.audio);
    json["subtitle"] = shortened(facts.subtitle, kMaxKey);
    json["audioTracks"] = toJson(facts.audioTracks);
    json["subtitleTracks"] = toJson(facts.subtitleTracks);
    json["audioTrack"] = facts.audioTrack;
    json["subtitleTrack"] = facts.subtitleTrack;
    return json;
}

Json::Value objectFrom(const Json::Value& json)
{
    return json.isObject() ? json : Json::Value(Json::objectValue);
}

MediaFacts factsFromJson(const Json::Value& json)
{
    MediaFacts facts;
    facts.duration = secondsFromJson(json["duration"]);
    for (const TagMember& tag : kTags) {
        facts.*tag.member = nameFromJson(json[tag.key], kMaxTag);
    }
    for (const FlagMember& flag : kFlags) {
        facts.*flag.member = flagFromJson(json[flag.key]);
    }
    facts.video = videoFromJson(objectFrom(json["video"]));
    facts.audio = audioFromJson(objectFrom(json["audio"]));
    facts.subtitle = nameFromJson(json["subtitle"], kMaxKey);
    facts.audioTracks = tracksFromJson(json["audioTracks"]);
    facts.subtitleTracks = tracksFromJson(json["subtitleTracks"]);
    facts.audioTrack = numberFromJson(json["audioTrack"], 0, kMost);
    facts.subtitleTrack = numberFromJson(json["subtitleTrack"], 0, kMost);
    return facts;
}

// Each kind of event: its name on the wire, and what stands there besides.

struct ToMessage {
    Json::Value& json;

    void operator()(const PlayerLoaded& told) const { facts("loaded", told.facts); }
    void operator()(const PlayerFactsChanged& told) const { facts("facts", told.facts); }
    void operator()(const PlayerPosition& told) const
    {
        json["tell"] = "position";
        json["seconds"] = told.seconds;
    }
    void operator()(const PlayerAtStart& /*told*/) const { json["tell"] = "start"; }
    void operator()(const PlayerSubtitleText& told) const
    {
        json["tell"] = "text";
        json["text"] = shortened(told.text, kMaxSubtitle);
    }
    void operator()(const PlayerSubtitlePicture& told) const
    {
        json["tell"] = "picture";
        json["x"] = told.x;
        json["y"] = told.y;
        json["width"] = told.width;
        json["height"] = told.height;
    }
    void operator()(const PlayerEnded& told) const
    {
        json["tell"] = "ended";
        json["reason"] = static_cast<int>(told.reason);
        json["text"] = shortened(told.text, kMaxTag);
        json["seconds"] = told.position;
    }
    void operator()(const PlayerKey& told) const
    {
        json["tell"] = "key";
        json["name"] = shortened(told.name, kMaxKey);
    }

private:
    void facts(const char* what, const MediaFacts& facts) const
    {
        json["tell"] = what;
        json["facts"] = toJson(facts);
    }
};

/// A text of several lines.
std::string linesFromJson(const Json::Value& json)
{
    std::string text = json.isString() ? json.asString() : "";
    if (!isUtf8(text)) {
        return "";
    }
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return (c < ' ' && c != '\n') || c == 0x7F; }, ' ');
    return shortened(std::move(text), kMaxSubtitle);
}

PlayerTold endFromJson(const Json::Value& json)
{
    using Reason = PlayerEnded::Reason;
    const int reason =
        numberFromJson(json["reason"], 0, static_cast<int>(Reason::PlayerLost), static_cast<int>(Reason::PlayerLost));
    return PlayerEnded{static_cast<Reason>(reason), nameFromJson(json["text"], kMaxTag), secondsFromJson(json["seconds"])};
}

PlayerTold pictureFromJson(const Json::Value& json)
{
    const auto side = [&json](const char* key, int least) { return numberFromJson(json[key], least, kMaxSide); };
    return PlayerSubtitlePicture{{}, side("x", -kMaxSide), side("y", -kMaxSide), side("width", 0), side("height", 0)};
}

struct EventReader {
    const char* name;
    PlayerTold (*read)(const Json::Value& json);
};
constexpr EventReader kReaders[] = {
    {"loaded", [](const Json::Value& json) -> PlayerTold { return PlayerLoaded{factsFromJson(objectFrom(json["facts"]))}; }},
    {"facts",
     [](const Json::Value& json) -> PlayerTold { return PlayerFactsChanged{factsFromJson(objectFrom(json["facts"]))}; }},
    {"position", [](const Json::Value& json) -> PlayerTold { return PlayerPosition{secondsFromJson(json["seconds"])}; }},
    {"start", [](const Json::Value&) -> PlayerTold { return PlayerAtStart{}; }},
    {"text", [](const Json::Value& json) -> PlayerTold { return PlayerSubtitleText{linesFromJson(json["text"])}; }},
    {"picture", pictureFromJson},
    {"ended", endFromJson},
    {"key", [](const Json::Value& json) -> PlayerTold { return PlayerKey{nameFromJson(json["name"], kMaxKey)}; }},
};

bool isTurn(int degrees)
{
    return degrees == 0 || degrees == 90 || degrees == 180 || degrees == 270;
}

} // namespace

double secondsFromJson(const Json::Value& json)
{
    return realFromJson(json, 0, kMaxSeconds, 0);
}

int numberFromJson(const Json::Value& json, int least, int most, int otherwise)
{
    return json.isInt() && json.asInt() >= least && json.asInt() <= most ? json.asInt() : otherwise;
}

Json::Value toJson(const PlayerOptions& options)
{
    Json::Value json(Json::objectValue);
    json["audioTrack"] = options.audioTrack;
    json["subtitleTrack"] = options.subtitleTrack;
    json["subtitles"] = options.subtitles;
    json["subtitleScale"] = options.subtitleScale;
    json["subtitleColor"] = options.subtitleColor;
    json["subtitlePosition"] = options.subtitlePosition;
    json["subtitleDelay"] = options.subtitleDelay;
    json["subtitleCharset"] = options.subtitleCharset;
    json["speed"] = options.speed;
    json["pictureSize"] = static_cast<int>(options.pictureSize);
    json["zoom"] = options.zoom;
    json["turn"] = options.turn;
    return json;
}

PlayerOptions optionsFromJson(const Json::Value& json)
{
    constexpr int kWhite = 0xFFFFFF;
    PlayerOptions options;
    options.audioTrack = numberFromJson(json["audioTrack"], 0, kMost);
    options.subtitleTrack = numberFromJson(json["subtitleTrack"], 0, kMost);
    options.subtitles = !json["subtitles"].isBool() || json["subtitles"].asBool();
    options.subtitleScale = realFromJson(json["subtitleScale"], 0.5, 2, 1);
    options.subtitleColor = static_cast<std::uint32_t>(numberFromJson(json["subtitleColor"], 0, kWhite, kWhite));
    options.subtitlePosition = numberFromJson(json["subtitlePosition"], 0, 100, 100);
    options.subtitleDelay = numberFromJson(json["subtitleDelay"], -kMaxDelay, kMaxDelay);
    options.subtitleCharset = nameFromJson(json["subtitleCharset"]);
    options.speed = realFromJson(json["speed"], 0.5, 2, 1);
    options.pictureSize =
        static_cast<PictureSize>(numberFromJson(json["pictureSize"], 0, static_cast<int>(PictureSize::Zoomed)));
    options.zoom = realFromJson(json["zoom"], 1, 8, 1);
    options.turn = numberFromJson(json["turn"], 0, 270);
    options.turn = isTurn(options.turn) ? options.turn : 0;
    return options;
}

Json::Value toJson(const PlayerEvent& event)
{
    Json::Value json(Json::objectValue);
    json["medium"] = static_cast<Json::UInt64>(event.medium);
    std::visit(ToMessage{json}, event.told);
    return json;
}

std::optional<PlayerEvent> eventFromJson(const Json::Value& json)
{
    if (!json["medium"].isUInt64() || !json["tell"].isString()) {
        return std::nullopt;
    }
    const std::string tell = json["tell"].asString();
    const auto* const reader = std::find_if(std::begin(kReaders), std::end(kReaders),
                                            [&tell](const EventReader& known) { return tell == known.name; });
    if (reader == std::end(kReaders)) {
        return std::nullopt;
    }
    return PlayerEvent{json["medium"].asUInt64(), reader->read(json)};
}

} // namespace desktop
