#include "desktop/worker/TagStream.h"

#include "desktop/worker/FileSize.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace desktop {

namespace {

// An ID3v2 tag's header: "ID3", two bytes of version, one of flags, four of size.
constexpr unsigned int kHeader = 10;
constexpr unsigned int kVersion = 3;
constexpr unsigned int kFlags = 5;
constexpr unsigned int kSize = 6;
constexpr unsigned int kSizeBytes = 4;
constexpr char kExtended = 0x40;
constexpr char kFooter = 0x10;

unsigned int sevenBitsEach(const TagLib::ByteVector& bytes, unsigned int offset)
{
    unsigned int number = 0;
    for (unsigned int i = offset; i < offset + kSizeBytes; ++i) {
        number = number << 7 | (static_cast<unsigned char>(bytes[static_cast<int>(i)]) & 0x7FU);
    }
    return number;
}

void setSevenBitsEach(TagLib::ByteVector& bytes, unsigned int offset, unsigned int number)
{
    for (unsigned int i = offset + kSizeBytes; i-- > offset; number >>= 7) {
        bytes[static_cast<int>(i)] = static_cast<char>(number & 0x7F);
    }
}

} // namespace

TagStream::TagStream(int fd)
    : m_fd(fd)
{
    m_length = static_cast<long>(std::max<std::int64_t>(fileSize(fd), 0));
}

long TagStream::hideExtendedHeader(long offset)
{
    const TagLib::ByteVector bytes = bytesAt(*this, offset, kHeader + kSizeBytes);
    if (bytes.size() < kHeader + kSizeBytes || id3TagSize(bytes) == 0 || (bytes[kFlags] & kExtended) == 0 ||
        (bytes[kVersion] != 3 && bytes[kVersion] != 4)) {
        return offset;
    }
    // The older version does not count the size itself.
    const unsigned int size = bytes[kVersion] == 3 ? bytes.toUInt(kHeader) + kSizeBytes : sevenBitsEach(bytes, kHeader);
    const unsigned int tag = sevenBitsEach(bytes, kSize);
    if (size >= tag) {
        return offset;
    }
    m_header = bytes.mid(0, kHeader);
    m_header[kFlags] = static_cast<char>(m_header[kFlags] & ~kExtended);
    setSevenBitsEach(m_header, kSize, tag - size);
    m_headerAt = offset + static_cast<long>(size);
    m_start = -1; // what has been read there is to be read again
    return m_headerAt;
}

void TagStream::beginAt(long offset)
{
    m_begin = offset;
    m_length -= offset;
    m_headerAt -= offset;
    m_start = -1;
}

TagLib::ByteVector TagStream::readBlock(unsigned long length)
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

void TagStream::seek(long offset, Position from)
{
    const long base = from == Beginning ? 0 : from == Current ? m_offset : length();
    m_offset = std::max(base + offset, 0L);
}

unsigned int TagStream::read(char* data, std::size_t size, long offset) const
{
    const ssize_t got = TEMP_FAILURE_RETRY(pread(m_fd, data, size, m_begin + offset));
    for (int i = 0; i < static_cast<int>(m_header.size()); ++i) {
        const long place = m_headerAt + i - offset;
        if (place >= 0 && place < got) {
            data[place] = m_header[i];
        }
    }
    return got > 0 ? static_cast<unsigned int>(got) : 0;
}

void TagStream::moveWindow(long start)
{
    if (start != m_start) {
        m_start = start;
        m_filled = read(m_window.data(), m_window.size(), start);
    }
}

TagLib::ByteVector bytesAt(TagLib::IOStream& stream, long offset, unsigned long length)
{
    stream.seek(offset, TagLib::IOStream::Beginning);
    return stream.readBlock(length);
}

long id3TagSize(const TagLib::ByteVector& header)
{
    if (header.size() < kHeader || !header.startsWith("ID3")) {
        return 0;
    }
    const long ends = (header[kFlags] & kFooter) != 0 ? 2 * long{kHeader} : long{kHeader};
    return ends + long{sevenBitsEach(header, kSize)};
}

} // namespace desktop
