#include "desktop/worker/StreamMetadata.h"

#include "desktop/worker/StreamLength.h"
#include "desktop/worker/TagText.h"

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace desktop {

namespace {

/// Where the tags of the whole file are: Ogg has them with the first of its streams.
const AVDictionary* tagsOf(const AvInput& input)
{
    const bool isOgg = std::strcmp(input->iformat->name, "ogg") == 0;
    for (unsigned int i = 0; isOgg && i < input->nb_streams; ++i) {
        if (av_dict_count(input->streams[i]->metadata) > 0) {
            return input->streams[i]->metadata;
        }
    }
    return input->metadata;
}

int wholeSeconds(std::int64_t duration)
{
    const std::int64_t seconds = duration > 0 ? (duration + AV_TIME_BASE / 2) / AV_TIME_BASE : 0;
    return seconds <= std::numeric_limits<int>::max() ? static_cast<int>(seconds) : 0; // a damaged claim
}

} // namespace

MediaMetadata readStreamMetadata(int fd)
{
    AvInput input(fd);
    AVStream* video = input.video();
    if (input->duration <= 0 || video == nullptr || !isDescribed(*video)) {
        input.describeStreams();
        video = input.video();
    }
    MediaMetadata metadata;
    metadata.title = fileTag(input, "title");
    metadata.artists = {fileTag(input, "artist")};
    metadata.album = fileTag(input, "album");
    metadata.genres = {fileTag(input, "genre")};
    metadata.year = yearOf(fileTag(input, "date"));
    tidyTexts(metadata);
    if (video != nullptr) {
        const Turn turn = turnOf(*video);
        metadata.width = video->codecpar->width;
        metadata.height = video->codecpar->height;
        metadata.rotation = turn.degrees();
        if (turn.swapsSides()) {
            std::swap(metadata.width, metadata.height);
        }
    }
    metadata.duration = wholeSeconds(lengthOf(input));
    return metadata;
}

std::string fileTag(const AvInput& input, const char* key)
{
    const AVDictionaryEntry* const entry = av_dict_get(tagsOf(input), key, nullptr, 0);
    return entry != nullptr ? entry->value : "";
}

bool isDescribed(const AVStream& stream)
{
    return stream.codecpar->codec_id != AV_CODEC_ID_NONE && stream.codecpar->width > 0 && stream.codecpar->height > 0;
}

Turn turnOf(const AVStream& stream)
{
    std::size_t size = 0;
    const std::uint8_t* const data = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, &size);
    std::array<std::int32_t, 9> matrix = {}; // of which the first two columns and rows turn
    if (data == nullptr || size < sizeof matrix) {
        return {};
    }
    std::memcpy(matrix.data(), data, sizeof matrix);
    const double xToX = matrix[0], xToY = matrix[1], yToX = matrix[3], yToY = matrix[4];
    const double area = xToX * yToY - xToY * yToX; // negative when the picture is seen from behind
    if (area == 0) {
        return {}; // a damaged claim
    }
    const double rightOrLeft = area > 0 ? 1 : -1;
    const double clockwise = std::atan2(rightOrLeft * xToY, rightOrLeft * xToX);
    const long quarters = std::lround(clockwise / (M_PI / 2));
    return {area < 0, static_cast<int>((quarters + 4) % 4)};
}

} // namespace desktop
