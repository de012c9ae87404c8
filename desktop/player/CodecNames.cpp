#include "desktop/player/CodecNames.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace desktop {

namespace {

std::string inTenths(int level)
{
    return std::to_string(level / 10) + "." + std::to_string(level % 10);
}

} // namespace

std::string codecName(const AVCodecParameters& stream)
{
    return stream.codec_id != AV_CODEC_ID_NONE ? avcodec_get_name(stream.codec_id) : "";
}

std::string profileName(const AVCodecParameters& stream)
{
    const char* const name = avcodec_profile_name(stream.codec_id, stream.profile);
    return name != nullptr ? name : "";
}

std::string levelName(const AVCodecParameters& stream)
{
    const int level = stream.level;
    if (level <= 0 && stream.codec_id != AV_CODEC_ID_AV1) {
        return "";
    }
    switch (stream.codec_id) {
    case AV_CODEC_ID_H264:
        return level == 9 ? "1b" : inTenths(level);
    case AV_CODEC_ID_VP9:
        return inTenths(level);
    case AV_CODEC_ID_HEVC:
        return inTenths(level / 3);
    case AV_CODEC_ID_AV1: // four to a whole number, from 2.0 on
        return level >= 0 && level < 31 ? std::to_string(2 + level / 4) + "." + std::to_string(level % 4) : "";
    case AV_CODEC_ID_MPEG2VIDEO: // by names, of which the numbers are the code
        return level == 10 ? "Low" : level == 8 ? "Main" : level == 6 ? "High 1440" : level == 4 ? "High" : "";
    default:
        return std::to_string(level);
    }
}

} // namespace desktop
