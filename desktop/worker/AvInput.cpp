#include "desktop/worker/AvInput.h"

#include "desktop/worker/FileSize.h"
#include "desktop/worker/MediaError.h"

#include <unistd.h>

#include <cerrno>
#include <vector>

namespace desktop {

namespace {

constexpr int kBuffer = 64 * 1024;

int refuseOtherFiles(AVFormatContext* /*format*/, AVIOContext** /*bytes*/, const char* /*url*/, int /*flags*/,
                     AVDictionary** /*options*/)
{
    return AVERROR(EPERM);
}

void check(int result, const char* failure)
{
    if (result < 0) {
        char reason[AV_ERROR_MAX_STRING_SIZE] = "";
        av_strerror(result, reason, sizeof reason);
        throw MediaError(std::string(failure) + ": " + reason);
    }
}

/// Options of each stream's decoder.
class StreamOptions {
public:
    explicit StreamOptions(std::size_t count)
        : m_options(count)
    {
    }
    ~StreamOptions()
    {
        for (AVDictionary*& options : m_options) {
            av_dict_free(&options);
        }
    }
    StreamOptions(const StreamOptions&) = delete;
    StreamOptions& operator=(const StreamOptions&) = delete;

    AVDictionary*& operator[](std::size_t stream) { return m_options[stream]; }
    AVDictionary** data() { return m_options.data(); }

private:
    std::vector<AVDictionary*> m_options;
};

/// Whether the file's header has all of a video but its pixels' format.
bool isDescribed(const AVCodecParameters& stream)
{
    return stream.codec_id == AV_CODEC_ID_H264 && stream.extradata_size > 0 && stream.width > 0 && stream.height > 0;
}

bool isCover(const AVStream& stream)
{
    return (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0 && stream.attached_pic.size > 0;
}

} // namespace

AvInput::AvInput(int fd, std::chrono::seconds time)
    : m_fd(fd)
    , m_deadline(std::chrono::steady_clock::now() + time)
{
    auto* const buffer = static_cast<unsigned char*>(av_malloc(kBuffer));
    m_bytes = avio_alloc_context(buffer, kBuffer, 0, this, &AvInput::readBytes, nullptr, &AvInput::seekBytes);
    m_format = avformat_alloc_context();
    if (m_bytes == nullptr || m_format == nullptr) {
        throw std::bad_alloc(); // and no way back: the process is short of everything
    }
    m_format->pb = m_bytes;
    m_format->io_open = &refuseOtherFiles;
    m_format->interrupt_callback = {&AvInput::isOver, this};
    const int result = avformat_open_input(&m_format, "", nullptr, nullptr); // frees m_format when it fails
    if (result < 0) {
        av_freep(&m_bytes->buffer);
        avio_context_free(&m_bytes);
    }
    check(result, "The file is of no known format");
}

AvInput::~AvInput()
{
    avformat_close_input(&m_format);
    av_freep(&m_bytes->buffer);
    avio_context_free(&m_bytes);
}

void AvInput::describeStreams()
{
    check(avformat_find_stream_info(m_format, nullptr), "The file does not tell what it holds");
}

// A picture is decoded for its pixels' format alone, then: it is left out, and not waited for.
void AvInput::describeStreamsShortly()
{
    constexpr std::int64_t kEnough = AV_TIME_BASE;
    StreamOptions options(m_format->nb_streams);
    for (unsigned int i = 0; i < m_format->nb_streams; ++i) {
        if (isDescribed(*m_format->streams[i]->codecpar)) {
            av_dict_set(&options[i], "skip_frame", "all", 0);
            m_format->max_analyze_duration = kEnough;
        }
    }
    check(avformat_find_stream_info(m_format, options.data()), "The file does not tell what it holds");
}

AVStream* AvInput::video() const
{
    const int index = av_find_best_stream(m_format, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    AVStream* const stream = index >= 0 ? m_format->streams[index] : nullptr;
    return stream != nullptr && !isCover(*stream) ? stream : nullptr;
}

AVStream* AvInput::cover() const
{
    for (unsigned int i = 0; i < m_format->nb_streams; ++i) {
        if (isCover(*m_format->streams[i])) {
            return m_format->streams[i];
        }
    }
    return nullptr;
}

bool AvInput::read(const AVStream& stream, AVPacket& packet)
{
    while (isOver(this) == 0 && av_read_frame(m_format, &packet) >= 0) {
        if (packet.stream_index == stream.index) {
            return true;
        }
        av_packet_unref(&packet);
    }
    return false;
}

int AvInput::readBytes(void* input, std::uint8_t* buffer, int size)
{
    auto& self = *static_cast<AvInput*>(input);
    if (isOver(input) != 0) {
        return AVERROR_EXIT;
    }
    const ssize_t got = TEMP_FAILURE_RETRY(pread(self.m_fd, buffer, static_cast<std::size_t>(size), self.m_offset));
    if (got <= 0) {
        return got == 0 ? AVERROR_EOF : AVERROR(errno);
    }
    self.m_offset += got;
    return static_cast<int>(got);
}

std::int64_t AvInput::seekBytes(void* input, std::int64_t offset, int whence)
{
    auto& self = *static_cast<AvInput*>(input);
    const std::int64_t size = fileSize(self.m_fd);
    if (size < 0) {
        return AVERROR(errno);
    }
    switch (whence & ~AVSEEK_FORCE) {
    case AVSEEK_SIZE:
        return size;
    case SEEK_CUR:
        offset += self.m_offset;
        break;
    case SEEK_END:
        offset += size;
        break;
    default:
        break;
    }
    if (offset < 0) {
        return AVERROR(EINVAL);
    }
    return self.m_offset = offset;
}

int AvInput::isOver(void* input)
{
    return std::chrono::steady_clock::now() > static_cast<AvInput*>(input)->m_deadline ? 1 : 0;
}

} // namespace desktop
