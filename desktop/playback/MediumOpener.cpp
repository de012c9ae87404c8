#include "desktop/playback/MediumOpener.h"

#include "desktop/files/DirectoryStream.h"
#include "desktop/files/EntryStatus.h"
#include "desktop/playback/SubtitleFiles.h"
#include "desktop/text/NameEncoding.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace desktop {

namespace {

constexpr std::ptrdiff_t kMaxOpenings = 4; // on one volume: more are held up, for it does not answer
constexpr std::chrono::seconds kEndTimeout(2);

std::vector<std::string> namesIn(const Location& folder)
{
    std::vector<std::string> names;
    const Directory directory = openDirectory(PathResolver::open(folder, O_RDONLY | O_DIRECTORY | O_NONBLOCK));
    while (const dirent* const entry = directory != nullptr ? readdir(directory.get()) : nullptr) {
        names.emplace_back(entry->d_name);
    }
    return names;
}

UniqueFd openFile(const Location& file)
{
    return openRegularFile(PathResolver::open(file, O_PATH).get());
}

// Those that cannot be opened are left out.
std::vector<SubtitleFile> openSubtitles(const Location& video)
{
    std::vector<SubtitleFile> opened;
    const Location folder = video.parent();
    for (const SubtitleFileName& found : subtitleFilesOf(video.name(), namesIn(folder), userLanguage())) {
        SubtitleFile file = {encodeName(found.name), found.language, openFile(folder.child(found.name))};
        if (!found.pictures.empty()) {
            file.pictures = openFile(folder.child(found.pictures));
        }
        if (file.fd && (found.pictures.empty() || file.pictures)) {
            opened.push_back(std::move(file));
        }
    }
    return opened;
}

// Takes as long as the file system does.
OpenedMedium openMedium(std::uint64_t number, const Location& file, FileType kind)
{
    OpenedMedium medium = {number, kind};
    medium.fd = openFile(file);
    if (!medium.fd) {
        medium.error = describeError(errno);
    } else if (kind == FILE_TYPE_VIDEO) {
        medium.subtitles = openSubtitles(file);
    }
    return medium;
}

} // namespace

MediumOpener::MediumOpener(Done done)
{
    const LockGuard lock(m_receiver->mutex);
    m_receiver->done = std::move(done);
}

MediumOpener::~MediumOpener()
{
    {
        const LockGuard lock(m_receiver->mutex);
        m_receiver->done = nullptr;
    }
    const auto end = std::chrono::steady_clock::now() + kEndTimeout;
    for (const Opening& opening : m_openings) {
        const auto left = end - std::chrono::steady_clock::now();
        if (!opening.job->waitFor(std::chrono::duration_cast<std::chrono::milliseconds>(std::max(left, left.zero())))) {
            opening.job->detach();
        }
    }
}

bool MediumOpener::open(std::uint64_t number, const Location& file, FileType kind)
{
    std::erase_if(m_openings, [](const Opening& opening) { return opening.job->waitFor(std::chrono::milliseconds(0)); });
    const auto isThere = [&file](const Opening& opening) { return opening.volume == file.volume; };
    if (std::count_if(m_openings.begin(), m_openings.end(), isThere) == kMaxOpenings) {
        return false;
    }
    const auto work = [number, file, kind, receiver = m_receiver](const std::stop_token& /*cancelled*/) {
        OpenedMedium medium = openMedium(number, file, kind);
        const LockGuard lock(receiver->mutex);
        if (receiver->done != nullptr) {
            receiver->done(std::move(medium));
        }
    };
    m_openings.push_back({file.volume, std::make_unique<BackgroundJob>(work)});
    return true;
}

} // namespace desktop
