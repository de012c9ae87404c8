// The media player: plays media that nobody vouches for, so that what they do to it harms nothing else.

#include "desktop/player/Player.h"
#include "desktop/player/PlayerConfinement.h"
#include "desktop/worker/HeifPhoto.h"
#include "desktop/workers/PlayerMessages.h"

#include <exiv2/exiv2.hpp>

#include <sys/socket.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

using namespace desktop;

bool isChannel(int fd)
{
    int type = 0;
    socklen_t size = sizeof type;
    return getsockopt(fd, SOL_SOCKET, SO_TYPE, &type, &size) == 0 && type == SOCK_SEQPACKET;
}

bool isGiven(int count, char** arguments, const char* word)
{
    for (int i = 1; i < count; ++i) {
        if (std::strcmp(arguments[i], word) == 0) {
            return true;
        }
    }
    return false;
}

void prepareLibraries()
{
    setlocale(LC_NUMERIC, "C"); // mpv insists
    setenv("MESA_SHADER_CACHE_DISABLE", "true", 1);
    av_log_set_level(AV_LOG_QUIET);
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    prepareHeif();
}

// Answers every medium with @p reason.
void refuse(const std::string& reason)
{
    while (const std::optional<WorkerMessage> message = receiveMessage(kWorkerChannel)) {
        if (message->body["do"] == "load" && message->body["medium"].isUInt64()) {
            const PlayerEnded ended = {PlayerEnded::Reason::LoadFailed, reason, 0};
            sendMessage(kWorkerChannel, toJson(PlayerEvent{message->body["medium"].asUInt64(), ended}));
        }
    }
}

} // namespace

#ifdef __SANITIZE_THREAD__
// mpv's own locks are not seen, and a report could not be written: the process opens no file.
extern "C" const char* __tsan_default_options()
{
    return "report_bugs=0";
}
#endif

int main(int count, char** arguments)
{
    if (!isChannel(kWorkerChannel)) {
        std::fprintf(stderr, "desktop-media-player: serves desktop-tv, which starts it; it is of no use by itself\n");
        return 2;
    }
    const PlayerOutput output = {isGiven(count, arguments, "--window"), isGiven(count, arguments, "--sound")};
    prepareLibraries();
    const std::string refusal = confinePlayer(output);
    if (!refusal.empty()) {
        refuse(refusal);
        return 0;
    }
    try {
        Player(output, kWorkerChannel).run();
    } catch (const std::exception& error) {
        refuse(error.what());
    }
    _exit(0); // threads that wait for a file may be left
}
