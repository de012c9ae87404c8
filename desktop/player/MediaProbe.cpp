#include "desktop/player/MediaProbe.h"

#include "desktop/player/CodecNames.h"
#include "desktop/worker/AnimatedWebp.h"
#include "desktop/worker/AvInput.h"
#include "desktop/worker/HeifPhoto.h"
#include "desktop/worker/MediaError.h"
#include "desktop/worker/PhotoDescription.h"
#include "desktop/worker/StreamMetadata.h"
#include "desktop/worker/TagText.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

namespace desktop {

namespace {

constexpr std::chrono::seconds kTime(8);

std::string tagOf(const AVDictionary* tags, const char* key)
{
    const AVDictionaryEntry* const entry = av_dict_get(tags, key, nullptr, 0);
    return entry != nullptr ? entry->value : "";
}

/// A text of the file as one that can be shown.
std::string tidied(std::string stored)
{
    MediaMetadata metadata;
    metadata.title = std::move(stored);
    tidyTexts(metadata);
    return metadata.title;
}

bool isDecodable(const AVCodecParameters& stream)
{
    return avcodec_find_decoder(stream.codec_id) != nullptr;
}

bool isPreferred(const AVStream& stream)
{
    return (stream.disposition & AV_DISPOSITION_DEFAULT) != 0;
}

int asInt(std::int64_t number)
{
    return static_cast<int>(std::clamp<std::int64_t>(number, 0, std::numeric_limits<int>::max()));
}

MediaTrack trackOf(const AVStream& stream, int id)
{
    return {id, tidied(tagOf(stream.metadata, "title")), tidied(tagOf(stream.metadata, "language")),
            codecName(*stream.codecpar), false};
}

AudioFacts audioFacts(const AVCodecParameters& stream)
{
    AudioFacts facts;
    facts.codec = codecName(stream);
    facts.profile = profileName(stream);
    facts.level = levelName(stream);
    facts.channels = stream.ch_layout.nb_channels;
    facts.sampleRate = stream.sample_rate;
    facts.bitRate = asInt(stream.bit_rate);
    return facts;
}

bool isHdr(const AVCodecParameters& stream)
{
    return stream.color_trc == AVCOL_TRC_SMPTE2084 || stream.color_trc == AVCOL_TRC_ARIB_STD_B67;
}

VideoFacts videoFacts(AvInput& input, AVStream& stream, bool turned)
{
    const AVCodecParameters& parameters = *stream.codecpar;
    VideoFacts facts;
    facts.codec = codecName(parameters);
    facts.profile = profileName(parameters);
    facts.level = levelName(parameters);
    facts.width = turned ? parameters.height : parameters.width;
    facts.height = turned ? parameters.width : parameters.height;
    facts.frameRate = av_q2d(av_guess_frame_rate(input.operator->(), &stream, nullptr));
    facts.hdr = isHdr(parameters);
    return facts;
}

/// Seconds that @p stream lasts by what the file says of it alone; 0 when it does not say.
double lengthOf(const AVStream& stream)
{
    int hours = 0;
    int minutes = 0;
    double seconds = 0;
    const std::string tag = tagOf(stream.metadata, "DURATION"); // in Matroska
    if (std::sscanf(tag.c_str(), "%3d:%2d:%lf", &hours, &minutes, &seconds) == 3) {
        return hours * 3600 + minutes * 60 + seconds;
    }
    return stream.duration > 0 ? static_cast<double>(stream.duration) * av_q2d(stream.time_base) : 0;
}

/// Whether the lengths that libavformat gives are what the file says, and no guess by its size.
bool tellsLengths(const AvInput& input)
{
    constexpr std::string_view kTelling[] = {"mov,mp4,m4a,3gp,3g2,mj2", "matroska,webm", "avi", "flac", "wav"};
    return input->duration_estimation_method != AVFMT_DURATION_FROM_BITRATE &&
           std::find(std::begin(kTelling), std::end(kTelling), input->iformat->name) != std::end(kTelling);
}

void addVideo(AvInput& input, AVStream& stream, ProbedMedia& media)
{
    const Turn turn = turnOf(stream);
    media.hasVideo = true;
    media.canShow = isDecodable(*stream.codecpar);
    media.turn = turn.degrees();
    media.mirrored = turn.mirror;
    media.facts.video = videoFacts(input, stream, turn.swapsSides());
}

void addStreams(const AvInput& input, ProbedMedia& media)
{
    for (unsigned int i = 0; i < input->nb_streams; ++i) {
        const AVStream& stream = *input->streams[i];
        const AVCodecParameters& parameters = *stream.codecpar;
        if (parameters.codec_type == AVMEDIA_TYPE_AUDIO) {
            const int id = static_cast<int>(media.audio.size()) + 1;
            media.audio.push_back(
                {trackOf(stream, id), audioFacts(parameters), isDecodable(parameters), isPreferred(stream)});
        } else if (parameters.codec_type == AVMEDIA_TYPE_SUBTITLE) {
            const int id = static_cast<int>(media.subtitles.size()) + 1;
            media.subtitles.push_back({trackOf(stream, id), static_cast<int>(i), isPreferred(stream)});
        }
        const bool plays = parameters.codec_type == AVMEDIA_TYPE_AUDIO || parameters.codec_type == AVMEDIA_TYPE_VIDEO;
        if (plays && tellsLengths(input)) {
            media.certainLength = std::max(media.certainLength, lengthOf(stream));
        }
    }
}

void addTags(const AvInput& input, MediaFacts& facts)
{
    MediaMetadata metadata;
    metadata.title = fileTag(input, "title");
    metadata.artists = {fileTag(input, "artist")};
    metadata.album = fileTag(input, "album");
    tidyTexts(metadata);
    facts.title = metadata.title;
    facts.artist = metadata.artists.empty() ? "" : metadata.artists.front();
    facts.album = metadata.album;
    facts.date = tidied(fileTag(input, "date"));
}

// Constant bit rates stand with the file as a whole when there is but one stream.
void completeBitRate(const AvInput& input, ProbedMedia& media)
{
    if (media.audio.size() == 1 && !media.hasVideo && media.audio.front().facts.bitRate == 0) {
        media.audio.front().facts.bitRate = asInt(input->bit_rate);
    }
}

// How a JPEG is coded stands in the marker of its frame; libavcodec has a profile of that number.
std::string jpegProfile(const MappedFile& file)
{
    constexpr int kProfiles = 0xC0;
    constexpr unsigned char kLastOfFrames = 0xCF;
    std::size_t at = 2;
    while (at + 4 <= file.size() && file.data()[at] == 0xFF) {
        const unsigned char marker = file.data()[at + 1];
        const bool isOther = marker == 0xC4 || marker == 0xC8 || marker == 0xCC;
        if (marker >= kProfiles && marker <= kLastOfFrames && !isOther) {
            const char* const name = avcodec_profile_name(AV_CODEC_ID_MJPEG, marker);
            return name != nullptr ? name : "";
        }
        at += marker == 0xFF ? 1U : 2U + file.data()[at + 2] * 256U + file.data()[at + 3];
    }
    return "";
}

bool isJpeg(const MappedFile& file)
{
    return file.size() > 2 && file.data()[0] == 0xFF && file.data()[1] == 0xD8;
}

std::string heifCodec(const MappedFile& file)
{
    const std::string_view brand(reinterpret_cast<const char*>(file.data()) + 8, 4);
    return brand.substr(0, 3) == "avi" ? "av1" : "hevc";
}

void addPhotoCodec(int fd, VideoFacts& facts)
{
    const MappedFile file(fd);
    if (isJpeg(file)) {
        facts.codec = avcodec_get_name(AV_CODEC_ID_MJPEG);
        facts.profile = jpegProfile(file);
    } else if (isHeif(file)) {
        facts.codec = heifCodec(file);
    } else if (isAnimatedWebp(file)) {
        facts.codec = avcodec_get_name(AV_CODEC_ID_WEBP);
    } else {
        const AvInput input(fd, kTime);
        const AVStream* const picture = input.video();
        facts.codec = picture != nullptr ? codecName(*picture->codecpar) : "";
    }
}

} // namespace

bool isPictureSubtitle(const std::string& codec)
{
    const AVCodecDescriptor* const described = avcodec_descriptor_get_by_name(codec.c_str());
    return described != nullptr && (described->props & AV_CODEC_PROP_BITMAP_SUB) != 0;
}

ProbedMedia probeMedia(int fd)
{
    AvInput input(fd, kTime);
    input.describeStreamsShortly();
    ProbedMedia media;
    AVStream* const video = input.video();
    if (AVStream* const shown = video != nullptr ? video : input.cover()) {
        addVideo(input, *shown, media);
    }
    addStreams(input, media);
    addTags(input, media.facts);
    completeBitRate(input, media);
    media.facts.duration = std::max(0.0, static_cast<double>(input->duration) / AV_TIME_BASE);
    media.facts.videoUnsupported = video != nullptr && !media.canShow;
    media.facts.audioUnsupported =
        !media.audio.empty() &&
        std::none_of(media.audio.begin(), media.audio.end(), [](const ProbedAudio& audio) { return audio.decodable; });
    return media;
}

MediaFacts photoFacts(int fd)
{
    const MediaMetadata photo = describePhoto(fd);
    MediaFacts facts;
    facts.date = photo.taken;
    facts.video.width = photo.width;
    facts.video.height = photo.height;
    addPhotoCodec(fd, facts.video);
    return facts;
}

} // namespace desktop
