#pragma once

#include "desktop/worker/AvPointers.h"

#include <chrono>

namespace desktop {

/// An open media file as libavformat sees it. It opens no other file, whatever its content asks for, and gives up when its
/// time is over.
class AvInput {
public:
    /// How long a file may take in a worker: less than the other side waits, so that the process survives.
    static constexpr std::chrono::seconds kTime{4};

    /// Reads the header of @p fd, from its beginning. Throws MediaError.
    explicit AvInput(int fd, std::chrono::seconds time = kTime);
    ~AvInput();
    AvInput(const AvInput&) = delete;
    AvInput& operator=(const AvInput&) = delete;

    AVFormatContext* operator->() const { return m_format; }
    /// Reads on until every stream is described; needed for files whose header does not.
    void describeStreams();
    /// The same but for the format of a video's pixels, which takes longest to find out, where the header has all else.
    void describeStreamsShortly();
    /// The stream of the best video, the cover left out; null when there is none.
    AVStream* video() const;
    /// The stream that holds a picture of the whole; null when there is none.
    AVStream* cover() const;
    /// Whether it has given up: what has been read may end too early then.
    bool timeIsOver() { return isOver(this) != 0; }
    /// The next packet of @p stream into @p packet; false at the end.
    bool read(const AVStream& stream, AVPacket& packet);

private:
    static int readBytes(void* input, std::uint8_t* buffer, int size);
    static std::int64_t seekBytes(void* input, std::int64_t offset, int whence);
    static int isOver(void* input);

    int m_fd;
    std::int64_t m_offset = 0;
    std::chrono::steady_clock::time_point m_deadline;
    AVIOContext* m_bytes = nullptr;
    AVFormatContext* m_format = nullptr;
};

} // namespace desktop
