#include "desktop/browsing/FolderListings.h"

#include "desktop/base/Log.h"
#include "desktop/files/MediaTypes.h"
#include "desktop/jobs/BackgroundJob.h"
#include "desktop/text/NameEncoding.h"

#include "platform/SocMwEvents.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

namespace desktop {

namespace {

// How long a page waits for a folder that has to be read first; the reading goes on for the next try.
constexpr std::chrono::seconds kPagePatience(5);
// How long a file system may take to open a folder, and to open and describe a file, which a worker may have to read.
constexpr std::chrono::seconds kOpenPatience(3);
constexpr std::chrono::seconds kDescribePatience(8);

std::string withoutTrailingSlash(std::string path)
{
    while (!path.empty() && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

struct Opened {
    UniqueFd fd;
    FolderStamp stamp;
    int error = 0; ///< errno value
};

Opened openLocation(const Location& location)
{
    Opened folder;
    struct stat status = {};
    folder.fd = PathResolver::open(location, O_RDONLY | O_DIRECTORY | O_NONBLOCK);
    if (!folder.fd || fstat(folder.fd.get(), &status) != 0) {
        folder.error = errno;
    }
    folder.stamp = FolderStamp(status);
    return folder;
}

struct Described {
    FileType type = FILE_TYPE_UNKNOWN;
    MediaFacts facts;
    int error = 0; ///< errno value
};

Described describeFile(const Location& location, const std::string& name, MediaLibrary* library)
{
    Described file;
    const UniqueFd pinned = PathResolver::open(location, O_PATH);
    const std::optional<EntryFacts> entry = pinned ? inspectPinned(pinned.get(), name) : std::nullopt;
    if (!entry) {
        file.error = errno;
        return file;
    }
    file.type = entry->type;
    if (library != nullptr && hasMediaFacts(entry->type)) {
        file.facts = library->factsOf(location, *entry, pinned.get());
    }
    return file;
}

} // namespace

FolderListings::FolderListings(PathResolver resolver, EventQueue& events, FolderObserver observer,
                               std::shared_ptr<MediaLibrary> library)
    : m_resolver(std::move(resolver))
    , m_events(events)
    , m_observer(std::move(observer))
    , m_library(std::move(library))
{
}

bool FolderListings::change(const std::string& directory, int itemsPerPage)
{
    m_itemsPerPage = itemsPerPage;
    {
        const std::lock_guard<std::mutex> lock(m_spellingMutex);
        m_spelling = directory;
    }
    dropFinishedReads();
    if (m_change != nullptr) {
        m_change->cancel(); // also when it has been read but not delivered: it has been overtaken
        const std::lock_guard<std::mutex> lock(m_readsMutex);
        m_others.push_back(std::move(m_change));
    }
    FolderToRead folder;
    if (!openFolder(directory, folder)) {
        return false;
    }
    startChange(std::move(folder));
    return true;
}

void FolderListings::cancel()
{
    for (const auto& read : m_others) {
        read->cancel();
    }
    if (m_change != nullptr && !m_change->finished()) {
        m_change->cancel();
    }
}

void FolderListings::lose(const std::string& stick)
{
    const std::lock_guard<std::mutex> lock(m_readsMutex);
    const auto failIfThere = [&stick](const std::unique_ptr<FolderRead>& read) {
        if (read != nullptr && read->stick() == stick) {
            read->fail(ENODEV);
        }
    };
    failIfThere(m_change);
    std::for_each(m_others.begin(), m_others.end(), failIfThere);
}

ListingPointer FolderListings::current() const
{
    return m_change != nullptr ? m_change->listing() : nullptr;
}

ListingPointer FolderListings::of(const std::string& directory)
{
    FolderToRead folder;
    if (!openFolder(directory, folder)) {
        return nullptr;
    }
    // The change is looked at first: once it has ended, the cache has its listing.
    FolderRead* read = runningChange(folder.directory);
    if (read == nullptr) {
        if (ListingPointer known = m_cache.find(folder.directory, folder.stamp)) {
            return known;
        }
        read = &startPageRead(std::move(folder));
    }
    if (!read->waitFor(kPagePatience)) {
        report(directory, ETIMEDOUT);
    }
    return read->listing();
}

bool FolderListings::describe(const std::string& path, media_file_info_s& info) const
{
    const std::string bytes = decodeName(path);
    const std::string name = bytes.substr(bytes.rfind('/') + 1); // npos + 1 is 0
    const auto described = runWithin<Described>(
        kDescribePatience, [location = m_resolver.locate(bytes), name, library = m_library](const CancelFlag&) {
            return describeFile(location, name, library.get());
        });
    const int error = described ? described->error : ETIMEDOUT;
    if (error != 0) {
        report(path, error);
        return false;
    }
    info = describeMedia(path, described->type, encodeName(nameWithoutExtension(name)), described->facts);
    return true;
}

bool FolderListings::forget(const std::string& directory)
{
    const std::string path = decodeName(directory);
    m_cache.dropBelow(path);
    const Location location = m_resolver.locate(path);
    if (location && m_library != nullptr) {
        m_library->forgetBelow(location);
    }
    return static_cast<bool>(location);
}

std::string FolderListings::directoryOf(const std::string& path) const
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return "";
    }
    const std::string directory = path.substr(0, slash);
    const std::lock_guard<std::mutex> lock(m_spellingMutex);
    if (!m_spelling.empty() && withoutTrailingSlash(m_spelling) == withoutTrailingSlash(directory)) {
        return m_spelling;
    }
    return directory.empty() ? "/" : directory;
}

bool FolderListings::openFolder(const std::string& directory, FolderToRead& folder) const
{
    folder.location = m_resolver.locate(decodeName(directory));
    folder.directory = withoutTrailingSlash(directory);
    folder.library = m_library;
    auto opened =
        runWithin<Opened>(kOpenPatience, [location = folder.location](const CancelFlag&) { return openLocation(location); });
    const int error = opened ? opened->error : ETIMEDOUT;
    if (error != 0) {
        report(directory, error);
        return false;
    }
    folder.fd = std::move(opened->fd);
    folder.stamp = opened->stamp;
    return true;
}

void FolderListings::startChange(FolderToRead folder)
{
    const std::string directory = folder.directory;
    const std::lock_guard<std::mutex> lock(m_readsMutex);
    m_change = std::make_unique<FolderRead>(std::move(folder), progressOf(directory),
                                            [this, directory](const FolderRead::OutcomePointer& outcome) {
                                                finishRead(directory, *outcome);
                                                answer(outcome);
                                            });
    failIfPulled(*m_change);
}

FolderRead* FolderListings::runningChange(const std::string& directory) const
{
    const bool runs = m_change != nullptr && m_change->directory() == directory && !m_change->finished();
    return runs ? m_change.get() : nullptr;
}

FolderRead& FolderListings::startPageRead(FolderToRead folder)
{
    dropFinishedReads();
    const std::string directory = folder.directory;
    const std::lock_guard<std::mutex> lock(m_readsMutex);
    m_others.push_back(std::make_unique<FolderRead>(
        std::move(folder), progressOf(directory),
        [this, directory](const FolderRead::OutcomePointer& outcome) { finishRead(directory, *outcome); }));
    failIfPulled(*m_others.back());
    return *m_others.back();
}

// Its stick may have gone between the opening of the folder and the start of the read, which lose() knew nothing of.
void FolderListings::failIfPulled(FolderRead& read) const
{
    if (m_resolver.locate(read.stick()).stick != read.stick()) {
        read.fail(ENODEV);
    }
}

void FolderListings::finishRead(const std::string& directory, const FolderRead::Outcome& outcome)
{
    if (outcome.listing != nullptr) {
        m_cache.keep(outcome.listing);
    } else {
        report(directory, outcome.error);
    }
}

// Whoever asked is answered, with an empty list if need be.
void FolderListings::answer(const FolderRead::OutcomePointer& outcome)
{
    const ListingPointer listing = outcome->listing != nullptr ? outcome->listing : std::make_shared<Listing>();
    m_events.post(SOCMW_MM_EVENT_FB_CHANGE_DIR_COMPLETED, std::shared_ptr<void>(listing, &listing->entries),
                  [outcome] { return !outcome->cancelled; });
}

void FolderListings::dropFinishedReads()
{
    const auto ended = [](const std::unique_ptr<FolderRead>& read) { return read->threadEnded(); };
    const std::lock_guard<std::mutex> lock(m_readsMutex);
    m_others.erase(std::remove_if(m_others.begin(), m_others.end(), ended), m_others.end());
}

void FolderListings::report(const std::string& path, int error) const
{
    const std::string reason = describeError(error);
    logLine(LogLevel::Warning, "cannot read " + path + ": " + reason);
    if (m_observer.failed) {
        m_observer.failed(path, reason);
    }
}

ReadProgress FolderListings::progressOf(const std::string& directory) const
{
    return [this, directory](std::size_t entries) {
        if (m_observer.progress) {
            m_observer.progress(directory, entries);
        }
    };
}

} // namespace desktop
