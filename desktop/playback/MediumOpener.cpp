#include "desktop/playback/MediumOpener.h"

#include "desktop/files/EntryStatus.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace desktop {

namespace {

constexpr std::size_t kMaxJobs = 16; // more at once are held up by a stick that does not answer
constexpr std::chrono::seconds kEndTimeout(2);

// Takes as long as the file system does.
OpenedMedium openMedium(std::uint64_t number, const Location& file, FileType kind)
{
    OpenedMedium medium = {number, kind};
    const UniqueFd pinned = PathResolver::open(file, O_PATH);
    medium.fd = openRegularFile(pinned.get());
    if (!medium.fd) {
        medium.error = describeError(errno);
    } else if (kind == FILE_TYPE_VIDEO) {
        medium.subtitles = {};
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
    for (const auto& job : m_jobs) {
        const auto left = end - std::chrono::steady_clock::now();
        if (!job->waitFor(std::chrono::duration_cast<std::chrono::milliseconds>(std::max(left, left.zero())))) {
            job->detach();
        }
    }
}

bool MediumOpener::open(std::uint64_t number, const Location& file, FileType kind)
{
    std::erase_if(m_jobs, [](const auto& job) { return job->waitFor(std::chrono::milliseconds(0)); });
    if (m_jobs.size() == kMaxJobs) {
        return false;
    }
    m_jobs.push_back(std::make_unique<BackgroundJob>(
        [number, file, kind, receiver = m_receiver](const std::stop_token& /*cancelled*/) {
            OpenedMedium medium = openMedium(number, file, kind);
            const LockGuard lock(receiver->mutex);
            if (receiver->done) {
                receiver->done(std::move(medium));
            }
        }));
    return true;
}

} // namespace desktop
