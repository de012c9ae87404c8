#include "desktop/player/VobSub.h"

#include "desktop/player/MemoryFile.h"
#include "desktop/worker/AvPointers.h"

#include <algorithm>
#include <cerrno>

namespace desktop {

namespace {

constexpr int kBuffer = 64 * 1024;

/// A text as libavformat reads a file.
class TextInput {
public:
    explicit TextInput(const std::string& text)
        : m_text(text)
        , m_bytes(avio_alloc_context(static_cast<unsigned char*>(av_malloc(kBuffer)), kBuffer, 0, this, &TextInput::read,
                                     nullptr, &TextInput::seek))
    {
    }
    ~TextInput()
    {
        av_freep(&m_bytes->buffer);
        avio_context_free(&m_bytes);
    }
    TextInput(const TextInput&) = delete;
    TextInput& operator=(const TextInput&) = delete;

    AVIOContext* get() const { return m_bytes; }

private:
    static int read(void* input, std::uint8_t* buffer, int size)
    {
        auto& self = *static_cast<TextInput*>(input);
        const std::size_t got = std::min(static_cast<std::size_t>(size), self.m_text.size() - self.m_offset);
        std::copy_n(self.m_text.data() + self.m_offset, got, buffer);
        self.m_offset += got;
        return got > 0 ? static_cast<int>(got) : AVERROR_EOF;
    }
    static std::int64_t seek(void* input, std::int64_t offset, int whence)
    {
        auto& self = *static_cast<TextInput*>(input);
        const auto size = static_cast<std::int64_t>(self.m_text.size());
        if ((whence & AVSEEK_SIZE) != 0) {
            return size;
        }
        if (whence != SEEK_SET || offset < 0 || offset > size) {
            return AVERROR(EINVAL);
        }
        self.m_offset = static_cast<std::size_t>(offset);
        return offset;
    }

    const std::string& m_text;
    std::size_t m_offset = 0;
    AVIOContext* m_bytes;
};

struct CloseInput {
    void operator()(AVFormatContext* format) const { avformat_close_input(&format); }
};
using InputPointer = std::unique_ptr<AVFormatContext, CloseInput>;

// libavformat opens the pictures by a name of its own; that of the descriptor leads to the file in memory alone.
InputPointer openIndex(const TextInput& index, int pictures)
{
    AVFormatContext* format = avformat_alloc_context();
    if (format == nullptr) {
        return nullptr;
    }
    format->pb = index.get();
    AVDictionary* options = nullptr;
    av_dict_set(&options, "sub_name", ("/proc/self/fd/" + std::to_string(pictures)).c_str(), 0);
    av_dict_set(&options, "protocol_whitelist", "file", 0);
    const int result = avformat_open_input(&format, "pictures.idx", av_find_input_format("vobsub"), &options);
    av_dict_free(&options);
    return InputPointer(result >= 0 ? format : nullptr);
}

/// A Matroska file while it is written, into memory.
class MatroskaOutput {
public:
    MatroskaOutput()
    {
        if (avformat_alloc_output_context2(&m_format, nullptr, "matroska", nullptr) < 0 ||
            avio_open_dyn_buf(&m_format->pb) < 0) {
            throw std::bad_alloc();
        }
    }
    ~MatroskaOutput()
    {
        take();
        avformat_free_context(m_format);
    }
    MatroskaOutput(const MatroskaOutput&) = delete;
    MatroskaOutput& operator=(const MatroskaOutput&) = delete;

    AVFormatContext* operator->() const { return m_format; }
    AVFormatContext* get() const { return m_format; }
    /// What has been written.
    std::string take()
    {
        std::uint8_t* bytes = nullptr;
        const int size = m_format->pb != nullptr ? avio_close_dyn_buf(m_format->pb, &bytes) : 0;
        m_format->pb = nullptr;
        std::string taken(reinterpret_cast<char*>(bytes), static_cast<std::size_t>(std::max(size, 0)));
        av_free(bytes);
        return taken;
    }

private:
    AVFormatContext* m_format = nullptr;
};

bool copyStreams(const AVFormatContext& from, const MatroskaOutput& to)
{
    for (unsigned int i = 0; i < from.nb_streams; ++i) {
        AVStream* const stream = avformat_new_stream(to.get(), nullptr);
        if (stream == nullptr || avcodec_parameters_copy(stream->codecpar, from.streams[i]->codecpar) < 0) {
            return false;
        }
        stream->codecpar->codec_tag = 0;
        stream->time_base = from.streams[i]->time_base;
        av_dict_copy(&stream->metadata, from.streams[i]->metadata, 0);
    }
    return from.nb_streams > 0 && avformat_write_header(to.get(), nullptr) >= 0;
}

void copyPackets(AVFormatContext& from, const MatroskaOutput& to)
{
    const PacketPointer packet = own(av_packet_alloc());
    while (av_read_frame(&from, packet.get()) >= 0) {
        const int index = packet->stream_index;
        av_packet_rescale_ts(packet.get(), from.streams[index]->time_base, to->streams[index]->time_base);
        av_write_frame(to.get(), packet.get()); // one that is damaged is left out
        av_packet_unref(packet.get());
    }
}

} // namespace

UniqueFd vobSubAsMatroska(const std::string& index, int pictures)
{
    const TextInput text(index);
    const InputPointer input = openIndex(text, pictures);
    if (input == nullptr) {
        return UniqueFd();
    }
    MatroskaOutput output;
    if (!copyStreams(*input, output)) {
        return UniqueFd();
    }
    copyPackets(*input, output);
    av_write_trailer(output.get());
    return memoryFile(output.take());
}

} // namespace desktop
