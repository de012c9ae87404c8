#include "desktop/files/MediaTypes.h"

#include "desktop/text/AsciiText.h"

#include <array>
#include <string>
#include <unordered_map>

namespace desktop {

namespace {

using Extensions = std::unordered_map<std::string, FileType>;

// Left out on purpose: ts and dat are video or something else entirely, which only the content shows.
const Extensions& knownExtensions()
{
    // Never destroyed: at the program's end, a thread that a dead file system keeps may still look at it.
    static const Extensions& extensions = *[] {
        auto* const table = new Extensions;
        Extensions& all = *table;
        const auto add = [&all](FileType type, std::initializer_list<const char*> names) {
            for (const char* name : names) {
                all.emplace(name, type);
            }
        };
        add(FILE_TYPE_PHOTO, {"avif", "bmp", "gif", "heic", "heif", "jfif", "jp2", "jpe", "jpeg", "jpg", "jxl", "mpo", "png",
                              "tif", "tiff", "webp"});
        add(FILE_TYPE_VIDEO,
            {"3g2", "3gp",  "asf", "avi", "divx", "f4v", "flv", "m1v", "m2t",  "m2ts", "m2v", "m4v", "mkv",  "mov", "mp4",
             "mpe", "mpeg", "mpg", "mts", "mxf",  "ogm", "ogv", "rm",  "rmvb", "tp",   "trp", "vob", "webm", "wmv"});
        add(FILE_TYPE_MUSIC,
            {"aac", "ac3",  "aif", "aiff", "alac", "amr", "ape", "dff", "dsf",  "dts", "ec3", "flac", "m4a", "m4b",
             "mid", "midi", "mka", "mp2",  "mp3",  "mpc", "oga", "ogg", "opus", "ra",  "tta", "wav",  "wma", "wv"});
        add(FILE_TYPE_PLAYLIST, {"asx", "cue", "m3u", "m3u8", "pls", "wpl", "xspf"});
        add(FILE_TYPE_OTHER,
            {"ass", "c",    "conf", "cpp", "css", "doc", "docx", "exe", "gz",  "h",   "htm", "html", "idx", "ini",
             "js",  "json", "log",  "md",  "mo",  "nfo", "pdf",  "po",  "py",  "sh",  "smi", "so",   "srt", "ssa",
             "sub", "sup",  "svg",  "tar", "ttf", "txt", "url",  "vtt", "xls", "xml", "xz",  "zip"});
        return table;
    }();
    return extensions;
}

std::size_t extensionDot(std::string_view name)
{
    const std::size_t dot = name.rfind('.');
    return dot == 0 ? std::string_view::npos : dot;
}

/// Bytes that a kind of file has at a fixed place.
struct Signature {
    std::size_t offset;
    std::string_view bytes;
    FileType type;
};

using namespace std::string_view_literals;

// The first match decides, so what is special stands before what is general.
constexpr std::array kSignatures = {
    Signature{0, "\xFF\xD8\xFF"sv, FILE_TYPE_PHOTO},
    Signature{0, "\x89PNG\r\n\x1A\n"sv, FILE_TYPE_PHOTO},
    Signature{0, "GIF8"sv, FILE_TYPE_PHOTO},
    Signature{0, "II*\0"sv, FILE_TYPE_PHOTO},
    Signature{0, "MM\0*"sv, FILE_TYPE_PHOTO},
    Signature{8, "WEBP"sv, FILE_TYPE_PHOTO},
    Signature{0, "\0\0\0\x0CjP  "sv, FILE_TYPE_PHOTO},
    Signature{0, "\0\0\0\x0CJXL "sv, FILE_TYPE_PHOTO},
    Signature{4, "ftyphei"sv, FILE_TYPE_PHOTO},
    Signature{4, "ftypmif1"sv, FILE_TYPE_PHOTO},
    Signature{4, "ftypavif"sv, FILE_TYPE_PHOTO},
    Signature{4, "ftypM4A"sv, FILE_TYPE_MUSIC},
    Signature{4, "ftypM4B"sv, FILE_TYPE_MUSIC},
    Signature{4, "ftyp"sv, FILE_TYPE_VIDEO},
    Signature{4, "moov"sv, FILE_TYPE_VIDEO},
    Signature{0, "\x1A\x45\xDF\xA3"sv, FILE_TYPE_VIDEO},
    Signature{0, "FLV\x01"sv, FILE_TYPE_VIDEO},
    Signature{0, "\x30\x26\xB2\x75\x8E\x66\xCF\x11"sv, FILE_TYPE_VIDEO},
    Signature{0, "\0\0\x01\xBA"sv, FILE_TYPE_VIDEO},
    Signature{0, "\0\0\x01\xB3"sv, FILE_TYPE_VIDEO},
    Signature{0, ".RMF"sv, FILE_TYPE_VIDEO},
    Signature{8, "AVI LIST"sv, FILE_TYPE_VIDEO},
    Signature{28, "\x80theora"sv, FILE_TYPE_VIDEO},
    Signature{8, "WAVE"sv, FILE_TYPE_MUSIC},
    Signature{8, "AIFF"sv, FILE_TYPE_MUSIC},
    Signature{8, "AIFC"sv, FILE_TYPE_MUSIC},
    Signature{0, "OggS"sv, FILE_TYPE_MUSIC},
    Signature{0, "fLaC"sv, FILE_TYPE_MUSIC},
    Signature{0, "ID3"sv, FILE_TYPE_MUSIC},
    Signature{0, "MThd"sv, FILE_TYPE_MUSIC},
    Signature{0, "#!AMR"sv, FILE_TYPE_MUSIC},
    Signature{0, "MAC "sv, FILE_TYPE_MUSIC},
    Signature{0, "wvpk"sv, FILE_TYPE_MUSIC},
    Signature{0, "DSD "sv, FILE_TYPE_MUSIC},
    Signature{0, "#EXTM3U"sv, FILE_TYPE_PLAYLIST},
    Signature{0, "[playlist]"sv, FILE_TYPE_PLAYLIST},
};

bool has(std::string_view bytes, std::size_t offset, std::string_view wanted)
{
    return bytes.size() > offset && bytes.compare(offset, wanted.size(), wanted) == 0;
}

// Packets of one length follow one another, each with a sync byte in the same place.
bool hasPackets(std::string_view bytes, std::size_t length, std::size_t sync)
{
    return has(bytes, sync, "G") && has(bytes, sync + length, "G") && has(bytes, sync + 2 * length, "G");
}

bool isTransportStream(std::string_view bytes)
{
    return hasPackets(bytes, 188, 0) || hasPackets(bytes, 192, 4); // the longer ones begin with four bytes of time
}

// A frame header of MPEG audio (layers I to III) or ADTS without any tag before it.
bool isAudioFrame(std::string_view bytes)
{
    if (bytes.size() < 4 || bytes[0] != '\xFF') {
        return false;
    }
    const auto second = static_cast<unsigned char>(bytes[1]);
    const auto third = static_cast<unsigned char>(bytes[2]);
    const bool adts = (second & 0xF6) == 0xF0 && (third & 0x3C) <= 0x30;
    const bool mpeg = (second & 0xE0) == 0xE0 && (second & 0x18) != 0x08 && (second & 0x06) != 0 && (third & 0xF0) != 0xF0 &&
                      (third & 0xF0) != 0 && (third & 0x0C) != 0x0C;
    return adts || mpeg;
}

bool isBitmap(std::string_view bytes)
{
    constexpr std::size_t kReserved = 6; // four zero bytes, where a text that begins with "BM" has none
    return has(bytes, 0, "BM") && has(bytes, kReserved, "\0\0\0\0"sv);
}

} // namespace

std::string extensionOf(std::string_view name)
{
    const std::size_t dot = extensionDot(name);
    return dot == std::string_view::npos ? "" : lowerCase(name.substr(dot + 1));
}

FileType typeByExtension(std::string_view name)
{
    const auto known = knownExtensions().find(extensionOf(name));
    return known == knownExtensions().end() ? FILE_TYPE_UNKNOWN : known->second;
}

FileType typeByContent(std::string_view bytes)
{
    for (const Signature& signature : kSignatures) {
        if (has(bytes, signature.offset, signature.bytes)) {
            return signature.type;
        }
    }
    if (isTransportStream(bytes)) {
        return FILE_TYPE_VIDEO;
    }
    if (isAudioFrame(bytes)) {
        return FILE_TYPE_MUSIC;
    }
    return isBitmap(bytes) ? FILE_TYPE_PHOTO : FILE_TYPE_OTHER;
}

bool isMedia(FileType type)
{
    return type == FILE_TYPE_PHOTO || type == FILE_TYPE_VIDEO || type == FILE_TYPE_MUSIC;
}

std::string_view nameWithoutExtension(std::string_view name)
{
    return name.substr(0, extensionDot(name));
}

} // namespace desktop
