#include "desktop/worker/MusicMetadata.h"

#include "desktop/worker/FileSize.h"
#include "desktop/worker/TagText.h"

#include <taglib/fileref.h>
#include <taglib/id3v1tag.h>
#include <taglib/id3v2tag.h>
#include <taglib/tag.h>
#include <taglib/tiostream.h>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>

namespace desktop {

namespace {

/// An open file as the tag library reads it; it is never written to. The library takes a few bytes at a time from places
/// near each other: they are read together.
class TagStream : public TagLib::IOStream {
public:
    explicit TagStream(int fd)
        : m_fd(fd)
    {
        m_length = static_cast<long>(std::max<std::int64_t>(fileSize(fd), 0));
    }

    TagLib::FileName name() const override { return ""; } // the format is found by the content
    TagLib::ByteVector readBlock(unsigned long length) override
    {
        // A size that a damaged file claims must not be allocated before it is there.
        const long rest = std::max(m_length - m_offset, 0L);
        const long wanted = static_cast<long>(std::min(static_cast<unsigned long>(rest), length));
        const long offset = m_offset;
        m_offset += wanted;
        if (offset / kWindow != (m_offset - 1) / kWindow) {
            TagLib::ByteVector block(static_cast<unsigned int>(wanted), 0);
            block.resize(read(block.data(), block.size(), offset));
            return block;
        }
        moveWindow(offset / kWindow * kWindow);
        const long behind = std::min(offset - m_start, long{m_filled});
        return {m_window.data() + behind, static_cast<unsigned int>(std::min(wanted, m_filled - behind))};
    }
    void writeBlock(const TagLib::ByteVector& /*data*/) override {}
    void insert(const TagLib::ByteVector& /*data*/, unsigned long /*start*/, unsigned long /*replace*/) override {}
    void removeBlock(unsigned long /*start*/, unsigned long /*length*/) override {}
    bool readOnly() const override { return true; }
    bool isOpen() const override { return true; }
    void seek(long offset, Position from) override
    {
        const long base = from == Beginning ? 0 : from == Current ? m_offset : length();
        m_offset = std::max(base + offset, 0L);
    }
    long tell() const override { return m_offset; }
    long length() override { return m_length; }
    void truncate(long /*length*/) override {}

private:
    static constexpr long kWindow = 8192;

    unsigned int read(char* data, std::size_t size, long offset) const
    {
        const ssize_t got = TEMP_FAILURE_RETRY(pread(m_fd, data, size, offset));
        return got > 0 ? static_cast<unsigned int>(got) : 0;
    }

    void moveWindow(long start)
    {
        if (start != m_start) {
            m_start = start;
            m_filled = read(m_window.data(), m_window.size(), start);
        }
    }

    int m_fd;
    long m_length = 0; ///< when it was opened
    long m_offset = 0;
    long m_start = -1;         ///< of the window, in the file
    unsigned int m_filled = 0; ///< bytes of the window
    std::array<char, kWindow> m_window = {};
};

constexpr wchar_t kKept = 0xF700; // and the byte: private characters for what is in no known charset

/// Keeps the bytes of tags that do not say their charset, or that say Latin whatever it is.
template <typename Handler>
class KeepBytes : public Handler {
public:
    TagLib::String parse(const TagLib::ByteVector& data) const override
    {
        std::wstring kept;
        for (const char c : data) {
            const auto byte = static_cast<unsigned char>(c);
            if (byte == 0) {
                break;
            }
            kept += static_cast<wchar_t>(byte < 0x80 ? byte : kKept + byte);
        }
        return kept;
    }
};

void keepBytesOfTags()
{
    static const KeepBytes<TagLib::ID3v1::StringHandler> first;
    static const KeepBytes<TagLib::ID3v2::Latin1StringHandler> second;
    TagLib::ID3v1::Tag::setStringHandler(&first);
    TagLib::ID3v2::Tag::setLatin1StringHandler(&second);
}

// As it is stored: its bytes when they were kept, else UTF-8.
std::string stored(const TagLib::String& tag)
{
    const auto isKept = [](wchar_t c) { return c >= kKept + 0x80 && c <= kKept + 0xFF; };
    if (std::none_of(tag.begin(), tag.end(), isKept)) {
        return tag.to8Bit(true);
    }
    std::string bytes;
    for (const wchar_t c : tag) {
        bytes += static_cast<char>(c & 0xFF);
    }
    return bytes;
}

std::string fourDigits(unsigned int year)
{
    char digits[sizeof "YYYY"] = "";
    if (year >= 1 && year <= 9999) {
        std::snprintf(digits, sizeof digits, "%04u", year % 10000);
    }
    return digits;
}

} // namespace

std::optional<MediaMetadata> readMusicMetadata(int fd)
{
    keepBytesOfTags();
    TagStream stream(fd);
    const TagLib::FileRef file(&stream);
    if (file.isNull() || file.audioProperties() == nullptr) {
        return std::nullopt;
    }
    MediaMetadata metadata;
    metadata.duration = std::max(file.audioProperties()->lengthInMilliseconds() + 500, 0) / 1000;
    if (const TagLib::Tag* const tag = file.tag()) {
        metadata.title = stored(tag->title());
        metadata.artists = {stored(tag->artist())};
        metadata.album = stored(tag->album());
        metadata.genres = {stored(tag->genre())};
        metadata.year = fourDigits(tag->year());
        tidyTexts(metadata);
    }
    return metadata;
}

} // namespace desktop
