// What the storage manager does of playing: play, stop, resume, transport and player modes; and of rendering.

#include "desktop/base/Log.h"
#include "desktop/boundary/DesktopMiddleware.h"

#include "platform/SocMwStorageUsbMgr.h"

using desktop::DesktopMiddleware;
using desktop::Playback;
using desktop::PlayRequest;

namespace {

constexpr int kOk = 0;
constexpr int kFailed = -1;

// What the second browser can ask for, by the number of the request.
constexpr PlayerModeE kRepeatModes[] = {PLAYER_MODE_SEQUENCE, PLAYER_MODE_REPEAT_ALL, PLAYER_MODE_REPEAT_ONE};

Playback& playback()
{
    return DesktopMiddleware::instance().playback();
}

int status(bool done)
{
    return done ? kOk : kFailed;
}

// Stores what was found, if anything was.
template <typename Found, typename Store>
int statusOf(const std::optional<Found>& found, const Store& store)
{
    if (!found) {
        return kFailed;
    }
    store(*found);
    return kOk;
}

/// The request to play entry @p index of the list that @p path means; nothing, which is logged, when there is no such list.
std::optional<PlayRequest> requestFor(FileType type, unsigned int index, bool playAll, const std::string& path)
{
    PlayRequest request;
    request.list = DesktopMiddleware::instance().shownLists().toPlay(path);
    request.kind = type;
    request.index = index;
    request.playAll = playAll;
    return request.list != nullptr ? std::optional<PlayRequest>(std::move(request)) : std::nullopt;
}

// What the host has said of the first medium comes before what the request says.
void setStart(PlayRequest& request, bool resume)
{
    const auto start = DesktopMiddleware::instance().takeStart();
    request.resume = resume && !start;
    request.start = start.value_or(0);
}

int play(std::optional<PlayRequest> request, bool resume, unsigned int& index)
{
    if (!request) {
        return kFailed;
    }
    if (!playback().firstOf(*request)) {
        desktop::logLine(desktop::LogLevel::Warning,
                         "there is nothing of type " + std::to_string(request->kind) + " to play from there on");
        return kFailed;
    }
    setStart(*request, resume);
    return statusOf(playback().play(*request), [&index](std::uint32_t playing) { index = playing; });
}

} // namespace

int SocMwStorageUsbMgr::playMediaFile(FileType type, unsigned int index, unsigned int& curIdx, bool playAll, bool resume,
                                      std::string path)
{
    return play(requestFor(type, index, playAll, path), resume, curIdx);
}

int SocMwStorageUsbMgr::kiroPlayMediaFile(FileType type, unsigned int index, unsigned int& curIdx, bool playAll, bool resume,
                                          std::string path)
{
    auto request = requestFor(type, index, playAll, path);
    if (request) {
        request->second = true;
    }
    return play(std::move(request), resume, curIdx);
}

int SocMwStorageUsbMgr::stopMediaFile(FileType type, unsigned int& index)
{
    return statusOf(playback().stop(type), [&index](std::uint32_t stopped) { index = stopped; });
}

int SocMwStorageUsbMgr::stopBackGroundMusicFile(unsigned int& curIdx)
{
    return stopMediaFile(FILE_TYPE_MUSIC, curIdx);
}

int SocMwStorageUsbMgr::closeAllMMPlayer(bool keepBackgroundMusic)
{
    playback().stopAll(keepBackgroundMusic);
    return kOk;
}

int SocMwStorageUsbMgr::isresumePlayMediaFile(FileType type, unsigned int index, unsigned int& curIdx, bool playAll,
                                              bool& resume, std::string path)
{
    const auto request = requestFor(type, index, playAll, path);
    return statusOf(request ? playback().firstOf(*request) : std::nullopt, [&](const desktop::PlayFirst& first) {
        curIdx = first.index;
        resume = first.resumes;
    });
}

int SocMwStorageUsbMgr::videoClearResume()
{
    playback().forgetPositions();
    return kOk;
}

int SocMwStorageUsbMgr::keyPlayPause(FileType type, bool play)
{
    return status(playback().playOrPause(type, play));
}

int SocMwStorageUsbMgr::keyPlayPrev(FileType type)
{
    return status(playback().previous(type));
}

int SocMwStorageUsbMgr::keyPlayNext(FileType type)
{
    return status(playback().next(type));
}

int SocMwStorageUsbMgr::keyFastForward(FileType type)
{
    return status(playback().wind(type, true));
}

int SocMwStorageUsbMgr::keyFastRewind(FileType type)
{
    return status(playback().wind(type, false));
}

int SocMwStorageUsbMgr::setPlayerMode(FileType type, PlayerModeE mode)
{
    return status(playback().setMode(type, mode));
}

int SocMwStorageUsbMgr::getPlayMode(Json::Value& mode, int mediaType)
{
    if (mediaType == FILE_TYPE_UNKNOWN) {
        mode["photo"] = playback().mode(FILE_TYPE_PHOTO).value();
        mode["video"] = playback().mode(FILE_TYPE_VIDEO).value();
        mode["music"] = playback().mode(FILE_TYPE_MUSIC).value();
        return kOk;
    }
    return statusOf(playback().mode(static_cast<FileType>(mediaType)),
                    [&mode](PlayerModeE found) { mode["mode"] = static_cast<int>(found); });
}

int SocMwStorageUsbMgr::repeatModeSet(int mode)
{
    if (mode < 0 || mode >= static_cast<int>(std::size(kRepeatModes))) {
        return kFailed;
    }
    playback().setMode(FILE_TYPE_VIDEO, kRepeatModes[mode]);
    playback().setMode(FILE_TYPE_MUSIC, kRepeatModes[mode]);
    return kOk;
}

int SocMwStorageUsbMgr::dmrPlayPrepare(FileType /*type*/, std::string& /*title*/)
{
    desktop::logLine(desktop::LogLevel::Warning, "no controller has given the renderer anything to play");
    return kFailed;
}
