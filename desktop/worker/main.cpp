// The media worker: opens files that nobody vouches for, so that what they do to it harms nothing else.

#include "desktop/worker/Confinement.h"
#include "desktop/worker/HeifPhoto.h"
#include "desktop/worker/MediaError.h"
#include "desktop/worker/MusicMetadata.h"
#include "desktop/worker/PhotoDescription.h"
#include "desktop/worker/PlaylistFile.h"
#include "desktop/worker/StreamMetadata.h"
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

MediaMetadata readMetadata(int fd, FileType type)
{
    switch (type) {
    case FILE_TYPE_PHOTO:
    case FILE_TYPE_PANORAMA:
        return describePhoto(fd);
    case FILE_TYPE_MUSIC:
        return readMusicMetadata(fd);
    default:
        return readStreamMetadata(fd);
    }
}

Json::Value work(const WorkerMessage& request)
{
    const Json::Value& job = request.body["job"];
    if (request.files.size() != (job == "metadata" ? 1U : 2U)) {
        throw MediaError("The request came without its files.");
    }
    const auto type = static_cast<FileType>(request.body["type"].asInt());
    const int fd = request.files.front().get();
    const int output = request.files.back().get();
    if (job == "metadata") {
        return toJson(readMetadata(fd, type));
    }
    if (job == "playlist") {
        Json::Value answer;
        answer["entries"] = static_cast<Json::UInt>(readPlaylist(fd, request.body["extension"].asString(), output));
        return answer;
    }
    const PixelSize bound = {request.body["width"].asInt(), request.body["height"].asInt()};
    writeThumbnail(readPicture(fd, type, bound), bound, output);
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
        const Json::Value reply = refusal.empty() ? answer(std::move(*request)) : failure(refusal);
        if (!sendMessage(kWorkerChannel, reply)) {
            break;
        }
    }
    return 0;
}
