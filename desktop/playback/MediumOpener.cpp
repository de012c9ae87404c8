#include "desktop/playback/MediumOpener.h"

#include "desktop/files/DirectoryStream.h"
#include "desktop/files/EntryStatus.h"
#include "desktop/playback/SubtitleFiles.h"
#include "desktop/text/NameEncoding.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>

namespace desktop {

namespace {

constexpr std::size_t kMaxOpenings = 4; // on one volume at a time
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

MediumOpener::MediumOpener(std::chrono::milliseconds patience, Done done)
    : m_patience(patience)
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
    std::erase_if(m_waiting, [kind](const Order& order) { return order.kind == kind; });
    const std::vector<const Opening*> running = runningOn(file.volume);
    if (running.size() < kMaxOpenings) {
        start({number, file, kind});
        return true;
    }
    const auto isLate = [limit = Clock::now() - m_patience](const Opening* opening) { return opening->begin <= limit; };
    if (std::all_of(running.begin(), running.end(), isLate)) {
        return false;
    }
    m_waiting.push_back({number, file, kind});
    return true;
}

void MediumOpener::openWaiting()
{
    for (std::size_t i = 0; i < m_waiting.size();) {
        if (runningOn(m_waiting[i].file.volume).size() == kMaxOpenings) {
            ++i;
            continue;
        }
        start(m_waiting[i]);
        m_waiting.erase(m_waiting.begin() + static_cast<std::ptrdiff_t>(i));
    }
}

std::vector<const MediumOpener::Opening*> MediumOpener::runningOn(const std::string& volume) const
{
    std::vector<const Opening*> running;
    for (const Opening& opening : m_openings) {
        if (opening.volume == volume && !*opening.ended) {
            running.push_back(&opening);
        }
    }
    return running;
}

void MediumOpener::start(const Order& order)
{
    const auto ended = std::make_shared<std::atomic<bool>>(false);
    const auto work = [order, ended, receiver = m_receiver](const std::stop_token& /*cancelled*/) {
        OpenedMedium medium = openMedium(order.number, order.file, order.kind);
        *ended = true;
        const LockGuard lock(receiver->mutex);
        if (receiver->done != nullptr) {
            receiver->done(std::move(medium));
        }
    };
    m_openings.push_back({order.file.volume, Clock::now(), ended, std::make_unique<BackgroundJob>(work)});
}

} // namespace desktop
