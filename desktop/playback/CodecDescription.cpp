#include "desktop/playback/CodecDescription.h"

#include "desktop/text/HumanSize.h"

#include "protocol/CodecTable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>

namespace desktop {

namespace {

using protocol::CodecKind;

constexpr double kHighestFrameRate = 1e6;
constexpr double kBitsOfAKilobit = 1000.0;

// What meta_data_t tells of the sound.
constexpr std::int32_t kNoDolby = 0;
constexpr std::int32_t kUnknownDolby = 4;
constexpr std::array<std::pair<std::string_view, std::int32_t>, 3> kDolby = {{{"ac3", 1}, {"eac3", 2}, {"truehd", 3}}};

constexpr std::string_view kJpeg = "mjpeg";

/// A codec as people know it.
struct ShownCodec {
    std::string name;
    int number = 0;
};

bool matches(std::string_view pattern, std::string_view codec)
{
    return pattern.ends_with('*') ? codec.starts_with(pattern.substr(0, pattern.size() - 1)) : codec == pattern;
}

// A codec that nobody has named goes by its own name.
ShownCodec shown(CodecKind kind, const std::string& codec)
{
    const auto* const found =
        std::find_if(protocol::kCodecs.begin(), protocol::kCodecs.end(), [&](const protocol::CodecDescription& known) {
            return known.kind == kind && matches(known.codec, codec);
        });
    return found != protocol::kCodecs.end() ? ShownCodec{found->name, found->number} : ShownCodec{codec, 0};
}

// @p number with @p unit; empty when it is not known.
std::string measured(int number, const char* unit)
{
    return number > 0 ? std::to_string(number) + " " + unit : "";
}

std::string resolution(const VideoFacts& video)
{
    const bool known = video.width > 0 && video.height > 0;
    return known ? std::to_string(video.width) + "x" + std::to_string(video.height) : "";
}

// False for what is no number, too.
std::uint32_t wholeFrameRate(double rate)
{
    return rate > 0 && rate < kHighestFrameRate ? static_cast<std::uint32_t>(std::lround(rate)) : 0;
}

void describeVideo(browser_codec& codec, const MediaFacts& facts)
{
    const ShownCodec video = shown(CodecKind::Video, facts.video.codec);
    const ShownCodec audio = shown(CodecKind::Audio, facts.audio.codec);
    codec.strVCodec = video.name;
    codec.culVideoCodec = video.number;
    codec.strResolu = resolution(facts.video);
    codec.FrameRate = wholeFrameRate(facts.video.frameRate);
    codec.strACodec = audio.name;
    codec.culAudioCodec = audio.number;
    codec.Achannel = facts.audio.channels;
    codec.Afrequen = facts.audio.sampleRate;
    codec.Abitrate = facts.audio.bitRate;
    codec.strAprofile = facts.audio.profile;
    codec.strAlevels = facts.audio.level;
    codec.strSubFormat = shown(CodecKind::Subtitle, facts.subtitle).name;
}

void describeMusic(browser_codec& codec, const AudioFacts& facts)
{
    const ShownCodec audio = shown(CodecKind::Audio, facts.codec);
    codec.strMcodec = audio.name;
    codec.culAudioCodec = audio.number;
    codec.Mchanel = static_cast<std::uint32_t>(std::max(facts.channels, 0));
    codec.strMfrequen = measured(facts.sampleRate, "Hz");
    codec.strMbirate = measured(static_cast<int>(std::lround(facts.bitRate / kBitsOfAKilobit)), "kbit/s");
    codec.strMaprofile = facts.profile;
    codec.strMalevels = facts.level;
}

void describePhoto(browser_codec& codec, const VideoFacts& facts)
{
    codec.strPcodec = shown(CodecKind::Photo, facts.codec).name;
    codec.strPresolu = resolution(facts);
    codec.strPJepg = facts.codec == kJpeg ? facts.profile : "";
}

// Whether @p text begins like @p form, in which "0" stands for a digit and "?" for anything but a digit.
bool looksLike(std::string_view text, std::string_view form)
{
    const auto fits = [](char wanted, char character) {
        const bool isDigit = character >= '0' && character <= '9';
        return wanted == '0' ? isDigit : (wanted == '?' ? !isDigit : character == wanted);
    };
    return text.size() >= form.size() && std::equal(form.begin(), form.end(), text.begin(), fits);
}

// "2024-05-17T12:30:00.5Z" and "2024:05:17 12:30:00" as "2024-05-17 12:30:00"; other texts, as "2001", as they are.
std::string dateText(const std::string& date)
{
    constexpr std::string_view kDay = "0000?00?00";
    constexpr std::string_view kTime = "?00:00:00";
    if (!looksLike(date, kDay)) {
        return date;
    }
    std::string text = date.substr(0, 4) + "-" + date.substr(5, 2) + "-" + date.substr(8, 2);
    const std::string_view rest = std::string_view(date).substr(kDay.size());
    if (looksLike(rest, kTime)) {
        text += " " + std::string(rest.substr(1, kTime.size() - 1));
    }
    return text;
}

std::int32_t dolbyOf(const MediaFacts& facts)
{
    if (facts.audio.codec.empty()) {
        return facts.audioTracks.empty() ? kNoDolby : kUnknownDolby;
    }
    const auto* const found =
        std::find_if(kDolby.begin(), kDolby.end(), [&](const auto& known) { return known.first == facts.audio.codec; });
    return found != kDolby.end() ? found->second : kNoDolby;
}

std::string codecsText(FileType kind, const MediaFacts& facts)
{
    const CodecKind pictures = kind == FILE_TYPE_VIDEO ? CodecKind::Video : CodecKind::Photo;
    std::string text = kind == FILE_TYPE_MUSIC ? "" : shown(pictures, facts.video.codec).name;
    const std::string audio = shown(CodecKind::Audio, facts.audio.codec).name;
    text += (text.empty() || audio.empty() ? "" : " / ") + audio;
    return text;
}

} // namespace

browser_codec describeCodecs(FileType kind, const std::string& title, const MediaFacts& facts)
{
    browser_codec codec;
    codec.strTitle = title;
    if (kind == FILE_TYPE_VIDEO) {
        describeVideo(codec, facts);
    } else if (kind == FILE_TYPE_MUSIC) {
        describeMusic(codec, facts.audio);
    } else {
        describePhoto(codec, facts.video);
    }
    return codec;
}

meta_data_t describeMedium(FileType kind, const std::string& title, const FolderFileInfo_s& entry, const MediaFacts& facts)
{
    meta_data_t medium;
    medium.title = title;
    medium.size = humanSize(entry.size);
    medium.date = facts.date.empty() ? entry.ctime : dateText(facts.date);
    medium.codec = codecsText(kind, facts);
    medium.dolby = dolbyOf(facts);
    return medium;
}

} // namespace desktop
