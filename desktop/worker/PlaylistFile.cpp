#include "desktop/worker/PlaylistFile.h"

#include "desktop/base/WriteAll.h"
#include "desktop/formats/PlaylistFormats.h"
#include "desktop/worker/MediaError.h"
#include "desktop/workers/PlaylistTransfer.h"

#include <unistd.h>

#include <cerrno>

namespace desktop {

namespace {

std::string wholeFile(int fd)
{
    std::string content;
    char bytes[65536];
    ssize_t got = 0;
    while ((got = TEMP_FAILURE_RETRY(pread(fd, bytes, sizeof bytes, static_cast<off_t>(content.size())))) > 0) {
        content.append(bytes, static_cast<std::size_t>(got));
        if (content.size() > kMaxPlaylistFile) {
            throw MediaError("The playlist is too large.");
        }
    }
    if (got < 0) {
        throw MediaError("The playlist cannot be read to its end.");
    }
    return content;
}

} // namespace

std::size_t readPlaylist(int playlist, const std::string& extension, int output)
{
    const auto entries = parsePlaylist(extension, wholeFile(playlist));
    if (!entries) {
        throw MediaError("The file is no playlist.");
    }
    const std::string packed = packEntries(*entries);
    if (!writeAll(output, packed.data(), packed.size())) {
        throw MediaError("The playlist's entries cannot be handed over.");
    }
    return entries->size();
}

} // namespace desktop
