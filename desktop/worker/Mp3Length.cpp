#include "desktop/worker/Mp3Length.h"

#include <taglib/mpegheader.h>
#include <taglib/mpegproperties.h>

#include <algorithm>

namespace desktop {

namespace {

using TagLib::MPEG::Header;

constexpr long kMaxRead = 64L << 20; // bytes; what is behind them is taken to be like them

/// Whether frames in several places of the sound, from @p begin to @p end, have different bit rates.
bool changesRate(TagLib::MPEG::File& file, long begin, long end)
{
    constexpr long kPlaces = 8;
    const int rate = Header(&file, begin, false).bitrate();
    for (long i = 1; i < kPlaces; ++i) {
        const long frame = file.nextFrameOffset(begin + (end - begin) / kPlaces * i);
        if (frame >= 0 && frame < end && Header(&file, frame, false).bitrate() != rate) {
            return true;
        }
    }
    return false;
}

} // namespace

int lengthOfChangingRate(TagLib::MPEG::File& file)
{
    const TagLib::MPEG::Properties* const properties = file.audioProperties();
    const long begin = file.firstFrameOffset();
    const long end = file.length();
    if (properties == nullptr || properties->xingHeader() != nullptr || begin < 0 || !changesRate(file, begin, end)) {
        return 0;
    }
    double seconds = 0;
    long place = begin;
    while (place >= 0 && place < std::min(end, begin + kMaxRead)) {
        const Header frame(&file, place, false);
        if (!frame.isValid() || frame.frameLength() <= 0 || frame.sampleRate() <= 0) {
            place = file.nextFrameOffset(place + 1);
            continue;
        }
        seconds += static_cast<double>(frame.samplesPerFrame()) / frame.sampleRate();
        place += frame.frameLength();
    }
    const double part =
        place > begin && place < end ? static_cast<double>(place - begin) / static_cast<double>(end - begin) : 1;
    const double milliseconds = 1000 * seconds / part;
    return milliseconds < 1e9 ? static_cast<int>(milliseconds) : 0;
}

} // namespace desktop
