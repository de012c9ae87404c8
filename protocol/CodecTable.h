#pragma once

// Made from protocol/storagemedia.json by tools/protocol: change it there.

#include <array>

namespace protocol {

enum class CodecKind { Video, Audio, Photo, Subtitle };

/// How a codec is shown.
struct CodecDescription {
    CodecKind kind;
    const char* codec; ///< as libavcodec names it; "*" at its end stands for whatever follows
    const char* name;
    int number; ///< of video and audio; never changes
};

// clang-format off

inline constexpr std::array<CodecDescription, 99> kCodecs = {{
    {CodecKind::Video, "mpeg1video", "MPEG-1", 1},
    {CodecKind::Video, "mpeg2video", "MPEG-2", 2},
    {CodecKind::Video, "mpeg4", "MPEG-4", 3},
    {CodecKind::Video, "h263", "H.263", 4},
    {CodecKind::Video, "h263p", "H.263", 4},
    {CodecKind::Video, "h263i", "H.263", 4},
    {CodecKind::Video, "h264", "H.264", 5},
    {CodecKind::Video, "hevc", "HEVC", 6},
    {CodecKind::Video, "vvc", "VVC", 7},
    {CodecKind::Video, "vp6", "VP6", 8},
    {CodecKind::Video, "vp6a", "VP6", 8},
    {CodecKind::Video, "vp6f", "VP6", 8},
    {CodecKind::Video, "vp8", "VP8", 9},
    {CodecKind::Video, "vp9", "VP9", 10},
    {CodecKind::Video, "av1", "AV1", 11},
    {CodecKind::Video, "vc1", "VC-1", 12},
    {CodecKind::Video, "wmv1", "WMV", 13},
    {CodecKind::Video, "wmv2", "WMV", 13},
    {CodecKind::Video, "wmv3", "WMV", 13},
    {CodecKind::Video, "msmpeg4v1", "MS MPEG-4", 14},
    {CodecKind::Video, "msmpeg4v2", "MS MPEG-4", 14},
    {CodecKind::Video, "msmpeg4v3", "MS MPEG-4", 14},
    {CodecKind::Video, "rv10", "RealVideo", 15},
    {CodecKind::Video, "rv20", "RealVideo", 15},
    {CodecKind::Video, "rv30", "RealVideo", 15},
    {CodecKind::Video, "rv40", "RealVideo", 15},
    {CodecKind::Video, "theora", "Theora", 16},
    {CodecKind::Video, "mjpeg", "Motion JPEG", 17},
    {CodecKind::Video, "dvvideo", "DV", 18},
    {CodecKind::Video, "prores", "ProRes", 19},
    {CodecKind::Video, "dnxhd", "DNxHD", 20},
    {CodecKind::Video, "ffv1", "FFV1", 21},
    {CodecKind::Video, "flv1", "Sorenson", 22},
    {CodecKind::Video, "svq1", "Sorenson", 22},
    {CodecKind::Video, "svq3", "Sorenson", 22},
    {CodecKind::Video, "cinepak", "Cinepak", 23},
    {CodecKind::Video, "rawvideo", "Uncompressed", 24},
    {CodecKind::Audio, "pcm_*", "PCM", 1},
    {CodecKind::Audio, "mp2", "MP2", 2},
    {CodecKind::Audio, "mp3", "MP3", 3},
    {CodecKind::Audio, "aac", "AAC", 4},
    {CodecKind::Audio, "aac_latm", "AAC", 4},
    {CodecKind::Audio, "ac3", "AC-3", 5},
    {CodecKind::Audio, "eac3", "E-AC-3", 6},
    {CodecKind::Audio, "truehd", "TrueHD", 7},
    {CodecKind::Audio, "ac4", "AC-4", 8},
    {CodecKind::Audio, "dts", "DTS", 9},
    {CodecKind::Audio, "flac", "FLAC", 10},
    {CodecKind::Audio, "alac", "ALAC", 11},
    {CodecKind::Audio, "vorbis", "Vorbis", 12},
    {CodecKind::Audio, "opus", "Opus", 13},
    {CodecKind::Audio, "wmav1", "WMA", 14},
    {CodecKind::Audio, "wmav2", "WMA", 14},
    {CodecKind::Audio, "wmapro", "WMA Pro", 15},
    {CodecKind::Audio, "wmalossless", "WMA Lossless", 16},
    {CodecKind::Audio, "amr_*", "AMR", 17},
    {CodecKind::Audio, "ape", "Monkey's Audio", 18},
    {CodecKind::Audio, "wavpack", "WavPack", 19},
    {CodecKind::Audio, "musepack*", "Musepack", 20},
    {CodecKind::Audio, "mp1", "MP1", 21},
    {CodecKind::Audio, "adpcm_*", "ADPCM", 22},
    {CodecKind::Audio, "ra_144", "RealAudio", 23},
    {CodecKind::Audio, "ra_288", "RealAudio", 23},
    {CodecKind::Audio, "cook", "RealAudio", 23},
    {CodecKind::Audio, "sipr", "RealAudio", 23},
    {CodecKind::Audio, "ralf", "RealAudio", 23},
    {CodecKind::Audio, "speex", "Speex", 24},
    {CodecKind::Audio, "tta", "TTA", 25},
    {CodecKind::Audio, "mlp", "MLP", 26},
    {CodecKind::Audio, "dsd_*", "DSD", 27},
    {CodecKind::Audio, "atrac*", "ATRAC", 28},
    {CodecKind::Photo, "mjpeg", "JPEG", 0},
    {CodecKind::Photo, "png", "PNG", 0},
    {CodecKind::Photo, "apng", "PNG", 0},
    {CodecKind::Photo, "gif", "GIF", 0},
    {CodecKind::Photo, "bmp", "BMP", 0},
    {CodecKind::Photo, "tiff", "TIFF", 0},
    {CodecKind::Photo, "webp", "WebP", 0},
    {CodecKind::Photo, "hevc", "HEIF", 0},
    {CodecKind::Photo, "av1", "AVIF", 0},
    {CodecKind::Photo, "jpeg2000", "JPEG 2000", 0},
    {CodecKind::Photo, "jpegxl", "JPEG XL", 0},
    {CodecKind::Subtitle, "subrip", "SubRip", 0},
    {CodecKind::Subtitle, "srt", "SubRip", 0},
    {CodecKind::Subtitle, "ass", "ASS", 0},
    {CodecKind::Subtitle, "ssa", "SSA", 0},
    {CodecKind::Subtitle, "webvtt", "WebVTT", 0},
    {CodecKind::Subtitle, "mov_text", "Timed text", 0},
    {CodecKind::Subtitle, "microdvd", "MicroDVD", 0},
    {CodecKind::Subtitle, "subviewer", "SubViewer", 0},
    {CodecKind::Subtitle, "subviewer1", "SubViewer", 0},
    {CodecKind::Subtitle, "sami", "SAMI", 0},
    {CodecKind::Subtitle, "text", "Text", 0},
    {CodecKind::Subtitle, "hdmv_pgs_subtitle", "PGS", 0},
    {CodecKind::Subtitle, "dvd_subtitle", "VobSub", 0},
    {CodecKind::Subtitle, "dvb_subtitle", "DVB", 0},
    {CodecKind::Subtitle, "xsub", "XSUB", 0},
    {CodecKind::Subtitle, "dvb_teletext", "Teletext", 0},
    {CodecKind::Subtitle, "eia_608", "Closed captions", 0},
}};

// clang-format on

} // namespace protocol
