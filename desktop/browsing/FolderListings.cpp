#include "desktop/browsing/FolderListings.h"

#include "desktop/files/MediaTypes.h"
#include "desktop/metadata/EntryDescription.h"
#include "desktop/text/NameEncoding.h"

#include "platform/SocMwEvents.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <stop_token>

namespace desktop {

namespace {

// How long a page waits for a folder that has to be read first; the reading goes on for the next try.
constexpr std::chrono::seconds kPageTimeout(5);
// How long a file system may take to open a folder, and to open and describe a file, which a worker may have to read.
constexpr std::chrono::seconds kOpenTimeout(3);
constexpr std::chrono::seconds kDescribeTimeout(8);

struct Described {
    FileType type = FILE_TYPE_UNKNOWN;
    MediaMetadata metadata;
    int error = 0; ///< errno value
};

Described describeFile(const Location& location, const std::string& name, MetadataCatalog* catalog)
{
    Described file;
    const UniqueFd pinned = PathResolver::open(location, O_PATH);
    const std::optional<EntryStatus> entry = pinned ? inspectPinned(pinned.get(), name) : std::nullopt;
    if (!entry) {
        file.error = errno;
        return file;
    }
    file.type = entry->type;
    if (catalog != nullptr && isMedia(entry->type)) {
        file.metadata = catalog->metadataOf(location, *entry, pinned.get());
    }
    return file;
}

} // namespace

FolderListings::FolderListings(LocationOpener opener, EventQueue& events, std::shared_ptr<MetadataCatalog> catalog)
    : m_opener(std::move(opener))
    , m_events(events)
    , m_catalog(std::move(catalog))
    , m_panoramas(std::make_shared<PanoramaFinder>(m_catalog))
{
}

bool FolderListings::change(const std::string& directory, int itemsPerPage)
{
    m_itemsPerPage = itemsPerPage;
    {
        const LockGuard lock(m_spellingMutex);
        m_spelling = directory;
    }
    dropFinishedReads();
    retireChange(); // also when it has been read but not delivered: it has been overtaken
    const std::string folder = withoutTrailingSlash(directory);
    ListingTask* change = nullptr;
    {
        const LockGuard lock(m_readsMutex);
        m_change = makeTask(directory, [this, folder](const ListingTask::Result& result) {
            finishRead(folder, result);
            answer(result);
        });
        change = m_change.get();
    }
    if (!waitUntilOpened(*change, directory)) {
        retireChange();
        return false;
    }
    return true;
}

void FolderListings::cancel()
{
    const LockGuard lock(m_readsMutex);
    for (const auto& read : m_others) {
        read->cancel();
    }
    if (m_change != nullptr && m_change->finished()) {
        m_change->withdraw(); // its event may not have been delivered yet
    } else if (m_change != nullptr) {
        m_change->cancel();
    }
    m_panoramas->cancel();
}

void FolderListings::volumeRemoved(const std::string& volume)
{
    const LockGuard lock(m_readsMutex);
    const auto failIfThere = [&volume](const std::unique_ptr<ListingTask>& read) {
        if (read != nullptr && read->volume() == volume) {
            read->fail(ENODEV);
        }
    };
    failIfThere(m_change);
    std::for_each(m_others.begin(), m_others.end(), failIfThere);
    m_panoramas->volumeRemoved(volume);
}

ListingPointer FolderListings::current() const
{
    const LockGuard lock(m_readsMutex);
    return m_change != nullptr ? m_change->listing() : nullptr;
}

ListingPointer FolderListings::of(const std::string& directory)
{
    ListingTask* read = runningRead(withoutTrailingSlash(directory));
    if (read == nullptr) {
        read = startPageRead(directory);
    }
    if (!waitUntilOpened(*read, directory)) {
        return nullptr;
    }
    if (!read->waitFor(kPageTimeout)) {
        m_opener.report(directory, ETIMEDOUT);
    }
    return read->listing();
}

ListingPointer FolderListings::known(const std::string& directory) const
{
    return m_cache->kept(withoutTrailingSlash(directory));
}

bool FolderListings::describe(const std::string& path, media_file_info_s& info) const
{
    const std::string name = lastName(decodeName(path));
    const auto described = m_opener.runWithin<Described>(
        kDescribeTimeout, path, [location = m_opener.locate(path), name, catalog = m_catalog](const std::stop_token&) {
            return describeFile(location, name, catalog.get());
        });
    if (!described) {
        return false;
    }
    if (described->error != 0) {
        m_opener.report(path, described->error);
        return false;
    }
    if (!described->metadata.error.empty()) {
        m_opener.reporter().failed(path, described->metadata.error);
    }
    m_opener.reporter().described(path, {described->metadata.title, described->metadata.year, described->metadata.taken});
    info = describeMedia(path, described->type, encodeName(nameWithoutExtension(name)), described->metadata);
    return true;
}

bool FolderListings::forget(const std::string& directory)
{
    m_cache->dropBelow(decodeName(directory));
    const Location location = m_opener.locate(directory);
    if (location && m_catalog != nullptr) {
        m_catalog->forgetBelow(location);
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
    const LockGuard lock(m_spellingMutex);
    if (!m_spelling.empty() && withoutTrailingSlash(m_spelling) == withoutTrailingSlash(directory)) {
        return m_spelling;
    }
    return directory.empty() ? "/" : directory;
}

std::unique_ptr<ListingTask> FolderListings::makeTask(const std::string& directory, Done done)
{
    OpenedFolder folder = m_opener.folderAt(directory);
    const std::string key = folder.directory;
    const std::string volume = folder.location.volume;
    ListingTask::Context context;
    context.panoramas = m_panoramas;
    context.progress = [opener = m_opener, key](std::size_t entries) { opener.reporter().progress(key, entries); };
    context.known = [cache = m_cache, key](const FolderStamp& stamp) { return cache->find(key, stamp); };
    context.done = std::move(done);
    auto task = std::make_unique<ListingTask>(std::move(folder), std::move(context));
    if (!volume.empty() && !m_opener.hasVolume(volume)) { // which volumeRemoved() did not know to be in use
        task->fail(ENODEV);
    }
    return task;
}

// A cancelled one comes to nothing.
ListingTask* FolderListings::runningRead(const std::string& directory) const
{
    const auto isIt = [&directory](const std::unique_ptr<ListingTask>& read) {
        return read != nullptr && read->directory() == directory && !read->isCancelled() && !read->finished();
    };
    const LockGuard lock(m_readsMutex);
    if (isIt(m_change)) {
        return m_change.get();
    }
    const auto other = std::find_if(m_others.begin(), m_others.end(), isIt);
    return other != m_others.end() ? other->get() : nullptr;
}

ListingTask* FolderListings::startPageRead(const std::string& directory)
{
    dropFinishedReads();
    const std::string folder = withoutTrailingSlash(directory);
    const LockGuard lock(m_readsMutex);
    m_others.push_back(
        makeTask(directory, [this, folder](const ListingTask::Result& result) { finishRead(folder, result); }));
    return m_others.back().get();
}

// Reports why it is not; the task is cancelled then.
bool FolderListings::waitUntilOpened(ListingTask& task, const std::string& directory) const
{
    const int error = task.waitUntilOpened(kOpenTimeout);
    if (error != 0) {
        task.cancel();
        m_opener.report(directory, error);
    }
    return error == 0;
}

void FolderListings::retireChange()
{
    const LockGuard lock(m_readsMutex);
    if (m_change != nullptr) {
        m_change->cancel();
        m_others.push_back(std::move(m_change));
    }
}

void FolderListings::finishRead(const std::string& directory, const ListingTask::Result& result)
{
    if (result.listing != nullptr) {
        m_cache->keep(result.listing);
    } else {
        m_opener.report(directory, result.error);
    }
}

// Every change is answered, with an empty list if need be.
void FolderListings::answer(const ListingTask::Result& result)
{
    const ListingPointer listing = result.listing != nullptr ? result.listing : std::make_shared<Listing>();
    m_events.post(SOCMW_MM_EVENT_FB_CHANGE_DIR_COMPLETED, std::shared_ptr<void>(listing, &listing->entries),
                  [withdrawn = result.withdrawn] { return !withdrawn.stop_requested(); });
}

void FolderListings::dropFinishedReads()
{
    const auto ended = [](const std::unique_ptr<ListingTask>& read) { return read->threadEnded(); };
    const LockGuard lock(m_readsMutex);
    m_others.erase(std::remove_if(m_others.begin(), m_others.end(), ended), m_others.end());
}

} // namespace desktop
