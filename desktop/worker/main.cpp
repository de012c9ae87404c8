// The media worker: opens files that nobody vouches for, so that what they do to it harms nothing else.

#include "desktop/worker/AvInput.h"
#include "desktop/worker/Confinement.h"
#include "desktop/worker/HeifPhoto.h"
#include "desktop/worker/MediaError.h"
#include "desktop/worker/MusicFacts.h"
#include "desktop/worker/PhotoFacts.h"
#include "desktop/worker/StreamFacts.h"
#include "desktop/worker/Thumbnail.h"

#include "desktop/workers/WorkerChannel.h"

#include <exiv2/exiv2.hpp>

#include <sys/socket.h>

#include <cstdio>

namespace {

using namespace desktop;

bool isChannel(int fd)
{
    int type = 0;
    socklen_t size = sizeof type;
    return getsockopt(fd, SOL_SOCKET, SO_TYPE, &type, &size) == 0 && type == SOCK_SEQPACKET;
}

void silenceLibraries()
{
    av_log_set_level(AV_LOG_QUIET);
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
}

MediaFacts streamFacts(int fd)
{
    AvInput input(fd);
    return readStreamFacts(input);
}

// Where the photo library does not know the size, the decoder's own look at the file does.
MediaFacts photoFacts(int fd)
{
    const MappedFile file(fd);
    if (isHeif(file)) {
        return readHeifFacts(file);
    }
    MediaFacts facts;
    try {
        facts = readPhotoFacts(file);
    } catch (const MediaError&) {
        return streamFacts(fd);
    }
    if (facts.width == 0 || facts.height == 0) {
        const MediaFacts picture = streamFacts(fd);
        facts.width = picture.width;
        facts.height = picture.height;
    }
    return facts;
}

MediaFacts readFacts(int fd, FileType type)
{
    switch (type) {
    case FILE_TYPE_PHOTO:
    case FILE_TYPE_PANORAMA:
        return photoFacts(fd);
    case FILE_TYPE_MUSIC:
        if (const auto facts = readMusicFacts(fd)) {
            return *facts;
        }
        return streamFacts(fd);
    default:
        return streamFacts(fd);
    }
}

Json::Value work(const WorkerMessage& request)
{
    const bool thumbnail = request.body["job"] == "thumbnail";
    if (request.files.size() != (thumbnail ? 2U : 1U)) {
        throw MediaError("The request came without its files.");
    }
    const auto type = static_cast<FileType>(request.body["type"].asInt());
    const int fd = request.files.front().get();
    if (!thumbnail) {
        return toJson(readFacts(fd, type));
    }
    const PictureSize bound = {request.body["width"].asInt(), request.body["height"].asInt()};
    writeThumbnail(readPicture(fd, type, bound), bound, request.files.back().get());
    return Json::Value(Json::objectValue);
}

Json::Value failure(const std::string& reason)
{
    Json::Value json;
    json["error"] = reason;
    return json;
}

// Takes the request, so that its files are closed before the other side hears that they have been read.
Json::Value answer(WorkerMessage request)
try {
    return work(request);
} catch (const std::bad_alloc&) {
    return failure("The file wants more memory than it may have.");
} catch (const std::exception& error) {
    return failure(error.what());
}

} // namespace

int main()
{
    if (!isChannel(kWorkerChannel)) {
        std::fprintf(stderr, "desktop-media-worker: serves desktop-tv, which starts it; it is of no use by itself\n");
        return 2;
    }
    silenceLibraries();
    prepareHeif();
    const std::string refusal = confine();
    while (auto request = receiveMessage(kWorkerChannel)) {
        renewProcessorTime();
        const Json::Value told = refusal.empty() ? answer(std::move(*request)) : failure(refusal);
        if (!sendMessage(kWorkerChannel, told)) {
            break;
        }
    }
    return 0;
}
