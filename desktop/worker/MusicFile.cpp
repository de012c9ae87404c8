#include "desktop/worker/MusicFile.h"

#include "desktop/worker/KeptBytes.h"
#include "desktop/worker/Mp3Length.h"

#include <taglib/aifffile.h>
#include <taglib/apefile.h>
#include <taglib/apetag.h>
#include <taglib/asffile.h>
#include <taglib/flacfile.h>
#include <taglib/id3v1tag.h>
#include <taglib/id3v2framefactory.h>
#include <taglib/id3v2tag.h>
#include <taglib/infotag.h>
#include <taglib/mp4atom.h>
#include <taglib/mp4file.h>
#include <taglib/mpcfile.h>
#include <taglib/mpegfile.h>
#include <taglib/oggflacfile.h>
#include <taglib/opusfile.h>
#include <taglib/speexfile.h>
#include <taglib/trueaudiofile.h>
#include <taglib/vorbisfile.h>
#include <taglib/wavfile.h>
#include <taglib/wavpackfile.h>
#include <taglib/xiphcomment.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace desktop {

namespace {

using namespace std::string_view_literals;
using FilePointer = std::unique_ptr<TagLib::File>;

/// For the name of its type, which the library keeps to those who derive from it.
struct AnyFrame : public TagLib::ID3v2::Frame {
    using Frame::Header;
};

/// Renames the genre frames before the tag library takes them apart.
class WholeGenres : public TagLib::ID3v2::FrameFactory {
protected:
    bool updateFrame(AnyFrame::Header* header) const override
    {
        const bool usable = FrameFactory::updateFrame(header);
        if (header->frameID() == "TCON") {
            header->setFrameID(kId3GenreFrame);
        }
        return usable;
    }
};

TagLib::ID3v2::FrameFactory* frameFactory()
{
    static WholeGenres factory;
    return &factory;
}

void addTag(MusicFile& music, const TagLib::Tag* tag)
{
    if (tag != nullptr) {
        music.tags.push_back(tag);
    }
}

void addOwnTag(MusicFile& music, std::unique_ptr<TagLib::Tag> tag)
{
    addTag(music, tag.get());
    music.own.push_back(std::move(tag));
}

template <typename File>
void openAs(MusicFile& music, TagStream& stream)
{
    music.file = std::make_unique<File>(&stream);
    addTag(music, music.file->tag());
}

template <typename File>
void openWithApe(MusicFile& music, TagStream& stream)
{
    auto file = std::make_unique<File>(&stream);
    addTag(music, file->APETag());
    addTag(music, file->ID3v1Tag());
    music.file = std::move(file);
}

void openOgg(MusicFile& music, TagStream& stream)
{
    if (TagLib::Ogg::Vorbis::File::isSupported(&stream)) {
        openAs<TagLib::Ogg::Vorbis::File>(music, stream);
    } else if (TagLib::Ogg::Opus::File::isSupported(&stream)) {
        openAs<TagLib::Ogg::Opus::File>(music, stream);
    } else if (TagLib::Ogg::Speex::File::isSupported(&stream)) {
        openAs<TagLib::Ogg::Speex::File>(music, stream);
    } else if (TagLib::Ogg::FLAC::File::isSupported(&stream)) {
        openAs<TagLib::Ogg::FLAC::File>(music, stream);
    }
}

void openFlac(MusicFile& music, TagStream& stream)
{
    auto file = std::make_unique<TagLib::FLAC::File>(&stream, frameFactory());
    addTag(music, file->xiphComment());
    addTag(music, file->ID3v2Tag());
    addTag(music, file->ID3v1Tag());
    music.file = std::move(file);
}

void openMpeg(MusicFile& music, TagStream& stream)
{
    auto file = std::make_unique<TagLib::MPEG::File>(&stream, frameFactory());
    addTag(music, file->ID3v2Tag());
    addTag(music, file->APETag());
    addTag(music, file->ID3v1Tag());
    music.length = lengthOfChangingRate(*file);
    music.file = std::move(file);
}

void openTrueAudio(MusicFile& music, TagStream& stream)
{
    constexpr long kFooter = 32; // bytes of an APEv2 tag, at its end
    constexpr long kId3v1 = 128; // bytes, behind it
    auto file = std::make_unique<TagLib::TrueAudio::File>(&stream, frameFactory());
    const long footer = stream.length() - (file->hasID3v1Tag() ? kId3v1 : 0) - kFooter;
    addTag(music, file->ID3v2Tag());
    if (footer > 0 && bytesAt(stream, footer, kFooter).startsWith("APETAGEX")) {
        addOwnTag(music, std::make_unique<TagLib::APE::Tag>(file.get(), footer));
    }
    addTag(music, file->ID3v1Tag());
    music.file = std::move(file);
}

// One whose length is spread over its fragments begins with a part, or with none; and QuickTime's own tags are others.
void openMp4(MusicFile& music, TagStream& stream)
{
    auto file = std::make_unique<TagLib::MP4::File>(&stream);
    TagLib::MP4::Atoms atoms(file.get());
    music.isPartlyKnown = atoms.find("moov", "mvex") != nullptr || file->tag() == nullptr || file->tag()->isEmpty();
    addTag(music, file->tag());
    music.file = std::move(file);
}

/// The chunks of a RIFF or an AIFF file.
class Chunks : public TagLib::RIFF::File {
public:
    Chunks(TagStream& stream, bool isBigEndian)
        : File(&stream, isBigEndian ? BigEndian : LittleEndian)
    {
    }
    TagLib::Tag* tag() const override { return nullptr; }
    TagLib::AudioProperties* audioProperties() const override { return nullptr; }
    bool save() override { return false; }

    using File::chunkCount;
    using File::chunkData;
    using File::chunkDataSize;
    using File::chunkName;
    using File::chunkOffset;
};

/// Adds what chunk @p name says to @p texts, which are those of a WAV or an AIFF file.
void addText(std::unique_ptr<TagLib::RIFF::Info::Tag>& texts, const TagLib::ByteVector& name, const TagLib::ByteVector& data)
{
    if (name == "NAME") {
        texts->setTitle(keepBytes(data));
    } else if (name == "AUTH") {
        texts->setArtist(keepBytes(data));
    } else if (name == "LIST" && data.startsWith("INFO")) {
        texts = std::make_unique<TagLib::RIFF::Info::Tag>(data);
    }
}

// ID3 comes first, whichever order the chunks have.
void addTagsOfChunks(MusicFile& music, TagStream& stream, Chunks& chunks)
{
    constexpr unsigned int kMaxTexts = 1U << 20; // bytes: more is a damaged claim
    auto texts = std::make_unique<TagLib::RIFF::Info::Tag>();
    for (unsigned int i = 0; i < chunks.chunkCount(); ++i) {
        const TagLib::ByteVector name = chunks.chunkName(i);
        if (name == "ID3 " || name == "id3 ") {
            const long begin = stream.hideExtendedHeader(chunks.chunkOffset(i));
            addOwnTag(music, std::make_unique<TagLib::ID3v2::Tag>(&chunks, begin, frameFactory()));
        } else if ((name == "NAME" || name == "AUTH" || name == "LIST") && chunks.chunkDataSize(i) <= kMaxTexts) {
            addText(texts, name, chunks.chunkData(i));
        }
    }
    addOwnTag(music, std::move(texts));
}

template <typename File, bool isBigEndian>
void openChunks(MusicFile& music, TagStream& stream)
{
    stream.seek(0, TagStream::Beginning); // such files begin where the stream is
    music.file = std::make_unique<File>(&stream);
    stream.seek(0, TagStream::Beginning);
    Chunks chunks(stream, isBigEndian);
    addTagsOfChunks(music, stream, chunks);
}

/// What a format's files have, behind an ID3v2 tag if there is one.
struct Format {
    unsigned int offset;
    std::string_view bytes;
    void (*open)(MusicFile& music, TagStream& stream);
};

constexpr std::array kFormats = {
    Format{0, "OggS"sv, &openOgg},
    Format{0, "fLaC"sv, &openFlac},
    Format{4, "ftyp"sv, &openMp4},
    Format{8, "WAVE"sv, &openChunks<TagLib::RIFF::WAV::File, false>},
    Format{8, "AIFF"sv, &openChunks<TagLib::RIFF::AIFF::File, true>},
    Format{8, "AIFC"sv, &openChunks<TagLib::RIFF::AIFF::File, true>},
    Format{0, "\x30\x26\xB2\x75\x8E\x66\xCF\x11"sv, &openAs<TagLib::ASF::File>},
    Format{0, "MPCK"sv, &openWithApe<TagLib::MPC::File>},
    Format{0, "MP+"sv, &openWithApe<TagLib::MPC::File>},
    Format{0, "wvpk"sv, &openWithApe<TagLib::WavPack::File>},
    Format{0, "MAC "sv, &openWithApe<TagLib::APE::File>},
    Format{0, "TTA"sv, &openTrueAudio},
    // Containers of other libraries, which may hold what the next would take for its own.
    Format{0, "\x1A\x45\xDF\xA3"sv, nullptr},
    Format{0, "RF64"sv, nullptr},
    Format{0, "RIFF"sv, nullptr},
};

} // namespace

MusicFile openMusicFile(TagStream& stream)
{
    constexpr unsigned long kHead = 16; // bytes
    stream.beginAt(stream.hideExtendedHeader(0));
    const TagLib::ByteVector head = bytesAt(stream, id3TagSize(bytesAt(stream, 0, kHead)), kHead);
    const auto* const format = std::find_if(kFormats.begin(), kFormats.end(), [&head](const Format& known) {
        return head.containsAt(TagLib::ByteVector(known.bytes.data(), static_cast<unsigned int>(known.bytes.size())),
                               known.offset);
    });
    MusicFile music;
    if (format == kFormats.end()) {
        if (TagLib::MPEG::File::isSupported(&stream)) {
            openMpeg(music, stream);
        }
    } else if (format->open != nullptr) {
        format->open(music, stream);
    }
    const bool isKnown = music.file != nullptr && music.file->isValid() && music.file->audioProperties() != nullptr;
    if (!isKnown) {
        return {};
    }
    music.length = music.length > 0 ? music.length : music.file->audioProperties()->lengthInMilliseconds();
    return music;
}

} // namespace desktop
