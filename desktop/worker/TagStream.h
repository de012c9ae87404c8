#pragma once

#include <taglib/tbytevector.h>
#include <taglib/tiostream.h>

#include <array>

namespace desktop {

/// An open file as the tag library reads it; it is never written to. The library takes a few bytes at a time from places
/// near each other: they are read together.
class TagStream : public TagLib::IOStream {
public:
    explicit TagStream(int fd);

    /// The ID3v2 tag at @p offset is from now on seen without its extended header, which the tag library miscounts; returns
    /// where the tag begins then. At most one tag of a stream is seen so.
    long hideExtendedHeader(long offset);
    /// The file is from now on seen from @p offset on.
    void beginAt(long offset);

    TagLib::FileName name() const override { return ""; } // the format is found by the content
    TagLib::ByteVector readBlock(unsigned long length) override;
    void writeBlock(const TagLib::ByteVector& /*data*/) override {}
    void insert(const TagLib::ByteVector& /*data*/, unsigned long /*start*/, unsigned long /*replace*/) override {}
    void removeBlock(unsigned long /*start*/, unsigned long /*length*/) override {}
    bool readOnly() const override { return true; }
    bool isOpen() const override { return true; }
    void seek(long offset, Position from) override;
    long tell() const override { return m_offset; }
    long length() override { return m_length; }
    void truncate(long /*length*/) override {}

private:
    static constexpr long kWindow = 8192;

    unsigned int read(char* data, std::size_t size, long offset) const;
    void moveWindow(long start);

    int m_fd;
    long m_begin = 0;  ///< in the file; the other places are counted from there
    long m_length = 0; ///< when it was opened
    long m_offset = 0;
    long m_start = -1;         ///< of the window, in the file
    unsigned int m_filled = 0; ///< bytes of the window
    std::array<char, kWindow> m_window = {};
    TagLib::ByteVector m_header; ///< of an ID3v2 tag, in place of what the file has
    long m_headerAt = 0;
};

/// The bytes of @p stream from @p offset on, at most @p length.
TagLib::ByteVector bytesAt(TagLib::IOStream& stream, long offset, unsigned long length);

/// The size of the whole ID3v2 tag that begins with @p header, ten bytes; 0 when none begins there.
long id3TagSize(const TagLib::ByteVector& header);

} // namespace desktop
