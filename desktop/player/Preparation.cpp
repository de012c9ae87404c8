#include "desktop/player/Preparation.h"

#include "desktop/player/MemoryFile.h"
#include "desktop/player/PictureStream.h"
#include "desktop/worker/MediaError.h"

#include <cerrno>
#include <exception>
#include <new>
#include <system_error>

namespace desktop {

namespace {

constexpr PixelSize kScreen = {3840, 2160};   // larger photos are made to fit
constexpr std::int64_t kMaxPhoto = 128 << 20; // bytes

PlayerEnded loadFailure(std::string text)
{
    return {PlayerEnded::Reason::LoadFailed, std::move(text), 0};
}

// Decoded from a copy: a file that fails while it is mapped would end the process.
void preparePhoto(const OpenMedium& file, PreparedMedium& medium)
{
    const UniqueFd copy = copyInMemory(file.fd(), kMaxPhoto);
    if (!copy) {
        const std::string reason = std::generic_category().message(errno);
        medium.refusal = errno == EFBIG ? loadFailure("The photo is too large.")
                                        : PlayerEnded{PlayerEnded::Reason::ReadFailed, reason, 0};
        return;
    }
    const Points points = shownPoints(readPicture(copy.get(), FILE_TYPE_PHOTO, kScreen), kScreen);
    UniqueFd stream = pictureStream(points);
    if (!stream) {
        throw std::bad_alloc();
    }
    medium.picture = std::make_shared<OpenMedium>(
        std::move(stream), [] {}, [] {});
    medium.probed.facts = photoFacts(copy.get());
    medium.probed.hasVideo = true;
    medium.probed.canShow = true;
}

void prepareStreams(const OpenMedium& file, std::vector<SubtitleFile> subtitles, PreparedMedium& medium)
{
    medium.probed = probeMedia(file.fd());
    for (SubtitleFile& subtitle : subtitles) {
        medium.subtitles.push_back(storeSubtitle(std::move(subtitle)));
    }
    const MediaFacts& facts = medium.probed.facts;
    const bool sounds = !medium.probed.audio.empty() && !facts.audioUnsupported;
    if (!sounds && !medium.probed.canShow) {
        const bool isThere = medium.probed.hasVideo || !medium.probed.audio.empty();
        medium.refusal = isThere ? PlayerEnded{PlayerEnded::Reason::Unsupported, "The file's codecs are not supported.", 0}
                                 : loadFailure("There is neither picture nor sound in the file.");
    }
}

// The libraries do not say that it is the reading which fails.
bool isUnreadable(OpenMedium& file)
{
    char first = 0;
    return file.read(&first, sizeof first, 0) < 0 || file.error() != 0;
}

} // namespace

PreparedMedium prepareMedium(FileType type, OpenMedium& file, std::vector<SubtitleFile> subtitles)
{
    PreparedMedium medium;
    try {
        if (type == FILE_TYPE_PHOTO || type == FILE_TYPE_PANORAMA) {
            preparePhoto(file, medium);
        } else {
            prepareStreams(file, std::move(subtitles), medium);
        }
    } catch (const std::bad_alloc&) {
        medium.refusal = loadFailure("The file wants more memory than it may have.");
    } catch (const std::exception& error) {
        medium.refusal = isUnreadable(file) ? readFailure(file) : loadFailure(error.what());
    }
    return medium;
}

PlayerEnded readFailure(const OpenMedium& file)
{
    return {PlayerEnded::Reason::ReadFailed, std::generic_category().message(file.error()), 0};
}

} // namespace desktop
