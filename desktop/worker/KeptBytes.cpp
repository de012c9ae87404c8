#include "desktop/worker/KeptBytes.h"

#include <taglib/id3v1tag.h>
#include <taglib/id3v2tag.h>
#include <taglib/infotag.h>

#include <algorithm>

namespace desktop {

namespace {

constexpr wchar_t kKept = 0xF700; // and the byte: private characters for what is in no known charset

template <typename Handler>
class KeepBytes : public Handler {
public:
    TagLib::String parse(const TagLib::ByteVector& data) const override { return keepBytes(data); }
};

} // namespace

void keepBytesOfTags()
{
    static const KeepBytes<TagLib::ID3v1::StringHandler> first;
    static const KeepBytes<TagLib::ID3v2::Latin1StringHandler> second;
    static const KeepBytes<TagLib::RIFF::Info::StringHandler> info;
    TagLib::ID3v1::Tag::setStringHandler(&first);
    TagLib::ID3v2::Tag::setLatin1StringHandler(&second);
    TagLib::RIFF::Info::Tag::setStringHandler(&info);
}

TagLib::String keepBytes(const TagLib::ByteVector& data)
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

} // namespace desktop
