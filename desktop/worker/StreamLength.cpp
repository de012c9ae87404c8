#include "desktop/worker/StreamLength.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace desktop {

namespace {

using namespace std::string_view_literals;

// Names of Matroska's elements, with the bit that says how long they are.
constexpr std::uint64_t kTime = 0xE7; // of a cluster, which begins with it, or with a checksum before it
constexpr std::uint64_t kChecksum = 0xBF;
constexpr std::uint64_t kSimpleBlock = 0xA3;
constexpr std::uint64_t kBlockGroup = 0xA0;
constexpr std::uint64_t kBlock = 0xA1;
constexpr std::int64_t kNegative = 0x8000; // and what follows: times before that of the cluster
constexpr std::string_view kCluster = "\x1F\x43\xB6\x75"sv;

/// Takes a number of Matroska's from the front of @p bytes, with or without the bit that says how long it is.
std::optional<std::uint64_t> takeNumber(std::string_view& bytes, bool withLength)
{
    const unsigned int first = bytes.empty() ? 0 : static_cast<unsigned char>(bytes.front());
    std::size_t length = 1;
    while (length <= 8 && (first & (0x100U >> length)) == 0) {
        ++length;
    }
    if (length > 8 || length > bytes.size()) {
        return std::nullopt;
    }
    std::uint64_t number = withLength ? first : first & (0xFFU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        number = number << 8 | static_cast<unsigned char>(bytes[i]);
    }
    bytes.remove_prefix(length);
    return number;
}

std::int64_t bigEndian(std::string_view bytes)
{
    std::int64_t number = 0;
    for (const char byte : bytes.substr(0, 7)) {
        number = number << 8 | static_cast<unsigned char>(byte);
    }
    return number;
}

/// The latest time of the cluster whose content @p bytes begins with; nothing when it is none.
std::optional<std::int64_t> latestTime(std::string_view bytes)
{
    std::optional<std::int64_t> begin;
    std::int64_t latest = 0;
    while (const auto name = takeNumber(bytes, true)) {
        const auto size = takeNumber(bytes, false);
        if (!size || (!begin && *name != kTime && *name != kChecksum)) {
            break;
        }
        const std::string_view content = *size < bytes.size() ? bytes.substr(0, static_cast<std::size_t>(*size)) : bytes;
        std::string_view block = content;
        if (*name == kTime) {
            begin = bigEndian(content);
        } else if ((*name == kSimpleBlock || *name == kBlock) && takeNumber(block, false) && block.size() >= 2) {
            const std::int64_t behind = bigEndian(block.substr(0, 2));
            latest = behind < kNegative ? std::max(latest, behind) : latest;
        }
        bytes.remove_prefix(*name == kBlockGroup ? 0 : content.size());
    }
    return begin ? std::optional(*begin + latest) : std::nullopt;
}

std::optional<std::int64_t> latestTimeOfMatroska(std::string_view bytes)
{
    std::size_t place = bytes.rfind(kCluster);
    while (place != std::string_view::npos) {
        std::string_view cluster = bytes.substr(place + kCluster.size());
        const auto time = takeNumber(cluster, false) ? latestTime(cluster) : std::nullopt;
        if (time || place == 0) {
            return time;
        }
        place = bytes.rfind(kCluster, place - 1);
    }
    return std::nullopt;
}

std::int64_t lengthOfMatroska(AvInput& input)
{
    constexpr std::int64_t kTail = 16 << 20; // bytes: more than a cluster usually has
    if (input->nb_streams == 0) {
        return 0;
    }
    const std::int64_t size = avio_size(input->pb);
    const std::int64_t begin = std::max<std::int64_t>(size - kTail, 0);
    if (size <= 0 || avio_seek(input->pb, begin, SEEK_SET) < 0) {
        return 0;
    }
    std::string tail(static_cast<std::size_t>(size - begin), '\0');
    const int got = avio_read(input->pb, reinterpret_cast<unsigned char*>(tail.data()), static_cast<int>(tail.size()));
    tail.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    const auto time = latestTimeOfMatroska(tail);
    return time ? av_rescale_q(*time, input->streams[0]->time_base, AV_TIME_BASE_Q) : 0;
}

/// By the packets behind the last place that can be sought.
std::int64_t lengthByPackets(AvInput& input)
{
    if (avformat_seek_file(input.operator->(), -1, INT64_MIN, INT64_MAX - 1, INT64_MAX, 0) < 0) {
        return 0;
    }
    const PacketPointer packet = own(av_packet_alloc());
    std::int64_t end = 0;
    while (av_read_frame(input.operator->(), packet.get()) >= 0) {
        const std::int64_t time = packet->pts != AV_NOPTS_VALUE ? packet->pts : packet->dts;
        if (time != AV_NOPTS_VALUE) {
            const AVRational unit = input->streams[packet->stream_index]->time_base;
            end = std::max(end, av_rescale_q(time + packet->duration, unit, AV_TIME_BASE_Q));
        }
        av_packet_unref(packet.get());
    }
    return input.timeIsOver() ? 0 : end;
}

std::int64_t lengthByItsEnd(AvInput& input)
{
    const std::string_view format = input->iformat->name;
    const std::int64_t start = std::max<std::int64_t>(input->start_time, 0); // or less when it is not known
    std::int64_t end = 0;
    if (format.starts_with("matroska"sv)) {
        end = lengthOfMatroska(input);
    } else if (format == "flac"sv || format == "wv"sv || format == "asf"sv) { // others would be read from the beginning on
        end = lengthByPackets(input);
    }
    return std::max<std::int64_t>(end - start, 0);
}

/// Frames without a container: by all of them, or by those at the beginning when there are too many.
std::int64_t lengthByFrames(AvInput& input)
{
    constexpr std::int64_t kMaxRead = 32 << 20; // bytes
    const PacketPointer packet = own(av_packet_alloc());
    std::int64_t length = 0;
    std::int64_t bytes = 0;
    while (bytes < kMaxRead && av_read_frame(input.operator->(), packet.get()) >= 0) {
        length += av_rescale_q(packet->duration, input->streams[packet->stream_index]->time_base, AV_TIME_BASE_Q);
        bytes += packet->size;
        av_packet_unref(packet.get());
    }
    const bool isAll = bytes < kMaxRead && !input.timeIsOver();
    return isAll || bytes == 0 ? length : av_rescale(length, std::max(avio_size(input->pb), bytes), bytes);
}

} // namespace

std::int64_t lengthOf(AvInput& input)
{
    const std::string_view format = input->iformat->name;
    if (format == "aac"sv || format == "amr"sv) { // which the library measures by their first frames
        return lengthByFrames(input);
    }
    return input->duration > 0 ? input->duration : lengthByItsEnd(input);
}

} // namespace desktop
