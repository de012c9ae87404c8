#include "desktop/player/SubtitlePictures.h"

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/player/PictureStream.h"
#include "desktop/worker/AvInput.h"

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <deque>
#include <optional>
#include <thread>
#include <utility>

namespace desktop {

namespace {

constexpr double kAhead = 3;            // seconds that are read before they play
constexpr double kBefore = 15;          // seconds that are read again after a jump, for a picture that is shown already
constexpr double kLargestStep = 5;      // seconds; what is further is a jump
constexpr double kSmallStepBack = 0.3;  // seconds, by which a clock may go back without having jumped
constexpr int kMaxSide = 4096;          // pixels
constexpr std::chrono::hours kTime(24); // for the whole file

/// What is shown from a time on.
struct Due {
    double time = 0;
    PlayerSubtitlePicture picture;
};

struct FreeSubtitle {
    void operator()(AVSubtitle* subtitle) const { avsubtitle_free(subtitle); }
};

/// The rectangle that holds all of a subtitle's pictures.
struct Place {
    int left = kMaxSide;
    int top = kMaxSide;
    int right = 0;
    int bottom = 0;

    bool isEmpty() const { return right <= left || bottom <= top; }
    PixelSize size() const { return {right - left, bottom - top}; }
};

bool isPicture(const AVSubtitleRect& rect)
{
    return rect.type == SUBTITLE_BITMAP && rect.data[0] != nullptr && rect.data[1] != nullptr && rect.w > 0 && rect.h > 0 &&
           rect.x >= 0 && rect.y >= 0 && rect.x <= kMaxSide - rect.w && rect.y <= kMaxSide - rect.h;
}

Place placeOf(const AVSubtitle& subtitle)
{
    Place place;
    for (unsigned int i = 0; i < subtitle.num_rects; ++i) {
        const AVSubtitleRect& rect = *subtitle.rects[i];
        if (isPicture(rect)) {
            place = {std::min(place.left, rect.x), std::min(place.top, rect.y), std::max(place.right, rect.x + rect.w),
                     std::max(place.bottom, rect.y + rect.h)};
        }
    }
    return place;
}

void paint(const AVSubtitleRect& rect, const Place& place, std::vector<unsigned char>& rgba)
{
    constexpr std::ptrdiff_t kBytes = 4;
    const auto* const palette = reinterpret_cast<const std::uint32_t*>(rect.data[1]);
    for (int y = 0; y < rect.h; ++y) {
        for (int x = 0; x < rect.w; ++x) {
            const std::uint32_t color = palette[rect.data[0][std::ptrdiff_t{y} * rect.linesize[0] + x]];
            const std::ptrdiff_t line = rect.y - place.top + y;
            unsigned char* const point = rgba.data() + (line * place.size().width + rect.x - place.left + x) * kBytes;
            point[0] = static_cast<unsigned char>(color >> 16U);
            point[1] = static_cast<unsigned char>(color >> 8U);
            point[2] = static_cast<unsigned char>(color);
            point[3] = static_cast<unsigned char>(color >> 24U);
        }
    }
}

/// The picture of @p subtitle, which stands on a screen of @p screen, for a video of @p video.
PlayerSubtitlePicture pictureOf(const AVSubtitle& subtitle, PixelSize screen, PixelSize video)
{
    const Place place = placeOf(subtitle);
    if (place.isEmpty()) {
        return {};
    }
    const auto [width, height] = place.size();
    std::vector<unsigned char> rgba(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    for (unsigned int i = 0; i < subtitle.num_rects; ++i) {
        if (isPicture(*subtitle.rects[i])) {
            paint(*subtitle.rects[i], place, rgba);
        }
    }
    const auto scaled = [](int length, int to, int from) {
        return to > 0 && from > 0 ? static_cast<int>(std::lround(1.0 * length * to / from)) : length;
    };
    return {pngOf(rgba, place.size()), scaled(place.left, video.width, screen.width),
            scaled(place.top, video.height, screen.height), scaled(width, video.width, screen.width),
            scaled(height, video.height, screen.height)};
}

/// Reads a track's pictures, each with its time.
class TrackReader {
public:
    explicit TrackReader(const PictureTrack& track)
        : m_external(track.external)
        , m_video{track.width, track.height}
        , m_input(track.file->fd(), kTime)
        , m_packet(own(av_packet_alloc()))
    {
        m_input.describeStreams();
        const bool isThere = track.stream >= 0 && track.stream < static_cast<int>(m_input->nb_streams);
        m_stream = isThere ? m_input->streams[track.stream] : nullptr;
        const AVCodec* const codec = isThere ? avcodec_find_decoder(m_stream->codecpar->codec_id) : nullptr;
        m_decoder = own(avcodec_alloc_context3(codec));
        m_isOpen = codec != nullptr && avcodec_parameters_to_context(m_decoder.get(), m_stream->codecpar) >= 0 &&
                   avcodec_open2(m_decoder.get(), codec, nullptr) >= 0;
        leaveOutTheRest();
    }

    bool isOpen() const { return m_isOpen; }
    void seek(double position)
    {
        const double start = std::max(position - kBefore, 0.0) + startTime();
        const auto time = static_cast<std::int64_t>(start * AV_TIME_BASE);
        if (avformat_seek_file(m_input.operator->(), -1, INT64_MIN, time, time, 0) < 0) {
            avformat_seek_file(m_input.operator->(), -1, INT64_MIN, time, INT64_MAX, 0); // the first one comes later
        }
        avcodec_flush_buffers(m_decoder.get());
        m_readUpTo = 0;
        m_isAtEnd = false;
    }
    /// How far it has been read, in seconds.
    bool hasReadUpTo(double position) const { return m_isAtEnd || m_readUpTo >= position; }
    /// Reads one packet; what it brings is put at the end of @p due.
    void readOne(std::deque<Due>& due)
    {
        if (av_read_frame(m_input.operator->(), m_packet.get()) < 0) {
            m_isAtEnd = true;
            return;
        }
        const AVStream& stream = *m_input->streams[m_packet->stream_index];
        const std::int64_t stamp = m_packet->dts != AV_NOPTS_VALUE ? m_packet->dts : m_packet->pts;
        if (stamp != AV_NOPTS_VALUE) {
            m_readUpTo = secondsOf(stamp, stream);
        }
        if (&stream == m_stream) {
            decode(due);
        }
        av_packet_unref(m_packet.get());
    }

private:
    // One other stream tells how far the file has been read while no subtitle comes.
    void leaveOutTheRest()
    {
        const AVStream* const video = m_input.video();
        for (unsigned int i = 0; i < m_input->nb_streams; ++i) {
            AVStream* const stream = m_input->streams[i];
            stream->discard = stream == m_stream || stream == video ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
        }
    }
    // Where the video's own time begins; other files keep to it.
    double startTime() const
    {
        return !m_external && m_input->start_time != AV_NOPTS_VALUE ? static_cast<double>(m_input->start_time) / AV_TIME_BASE
                                                                    : 0;
    }
    double secondsOf(std::int64_t stamp, const AVStream& stream) const
    {
        return static_cast<double>(stamp) * av_q2d(stream.time_base) - startTime();
    }
    PixelSize screen() const
    {
        return m_decoder->width > 0 && m_decoder->height > 0 ? PixelSize{m_decoder->width, m_decoder->height} : m_video;
    }

    void decode(std::deque<Due>& due)
    {
        AVSubtitle subtitle = {};
        int got = 0;
        if (avcodec_decode_subtitle2(m_decoder.get(), &subtitle, &got, m_packet.get()) < 0 || got == 0) {
            return;
        }
        const std::unique_ptr<AVSubtitle, FreeSubtitle> release(&subtitle);
        constexpr double kMilliseconds = 1000;
        const double time = m_packet->pts != AV_NOPTS_VALUE ? secondsOf(m_packet->pts, *m_stream) : m_readUpTo;
        const double begin = time + subtitle.start_display_time / kMilliseconds;
        while (!due.empty() && due.back().time >= begin) {
            due.pop_back();
        }
        due.push_back({begin, pictureOf(subtitle, screen(), m_video)});
        if (const double end = time + lengthOf(subtitle); end > begin) {
            due.push_back({end, {}});
        }
    }
    // Seconds from the packet's time on; 0: until the next one.
    double lengthOf(const AVSubtitle& subtitle) const
    {
        constexpr double kMilliseconds = 1000;
        if (subtitle.end_display_time != 0 && subtitle.end_display_time != UINT32_MAX) {
            return subtitle.end_display_time / kMilliseconds;
        }
        return static_cast<double>(m_packet->duration) * av_q2d(m_stream->time_base);
    }

    const bool m_external;
    const PixelSize m_video;
    AvInput m_input;
    const PacketPointer m_packet;
    AVStream* m_stream = nullptr;
    CodecPointer m_decoder;
    bool m_isOpen = false;
    double m_readUpTo = 0;
    bool m_isAtEnd = false;
};

} // namespace

/// What both threads have.
struct SubtitlePictures::State {
    State(PictureTrack pictureTrack, Show show)
        : track(std::move(pictureTrack))
        , m_show(std::move(show))
    {
    }

    void work();
    void stop()
    {
        const LockGuard lock(m_mutex);
        m_stopped = true;
        m_changed.notify_one();
    }
    void moveTo(double position)
    {
        const LockGuard lock(m_mutex);
        m_position = position;
        m_changed.notify_one();
    }

    const PictureTrack track;

private:
    /// Waits until it plays elsewhere than at @p last; nothing once it is over.
    std::optional<double> waitForMove(double last)
    {
        UniqueLock lock(m_mutex);
        m_changed.wait(lock.native(),
                       [this, last]() REQUIRES(m_mutex) { return m_stopped || (m_position && *m_position != last); });
        return m_stopped ? std::nullopt : m_position;
    }
    void show(PlayerSubtitlePicture picture)
    {
        const bool isNothing = picture.png.empty();
        const LockGuard lock(m_mutex);
        if (!m_stopped && !(isNothing && m_showsNothing)) {
            m_showsNothing = isNothing;
            m_show(std::move(picture));
        }
    }

    const Show m_show;
    Mutex m_mutex;
    std::condition_variable m_changed;
    bool m_stopped GUARDED_BY(m_mutex) = false;
    std::optional<double> m_position GUARDED_BY(m_mutex);
    bool m_showsNothing GUARDED_BY(m_mutex) = true;
};

void SubtitlePictures::State::work()
try {
    TrackReader reader(track);
    std::deque<Due> due;
    double last = -1;
    bool isFirst = true;
    while (const std::optional<double> position = reader.isOpen() ? waitForMove(last) : std::nullopt) {
        if (isFirst || *position < last - kSmallStepBack || *position > last + kLargestStep) {
            reader.seek(*position);
            due.assign(1, {}); // nothing, until something is found
        }
        isFirst = false;
        last = *position;
        while (!reader.hasReadUpTo(last + kAhead)) {
            reader.readOne(due);
        }
        while (due.size() > 1 && due[1].time <= last) {
            due.pop_front();
        }
        if (!due.empty() && due.front().time <= last) {
            show(std::move(due.front().picture));
            due.pop_front();
        }
    }
} catch (const std::exception&) { // mpv plays on without
}

SubtitlePictures::SubtitlePictures(PictureTrack track, Show show)
    : m_state(std::make_shared<State>(std::move(track), std::move(show)))
{
    std::thread([state = m_state] { state->work(); }).detach();
}

SubtitlePictures::~SubtitlePictures()
{
    m_state->stop();
}

void SubtitlePictures::moveTo(double position)
{
    m_state->moveTo(position);
}

} // namespace desktop
