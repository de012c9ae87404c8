#include "desktop/grouping/Grouping.h"

#include "desktop/base/IntervalTimer.h"
#include "desktop/base/Log.h"
#include "desktop/files/MediaTypes.h"
#include "desktop/files/TreeWalk.h"
#include "desktop/files/UnreadableFiles.h"
#include "desktop/metadata/EntryDescription.h"
#include "desktop/metadata/MetadataReadPool.h"

#include "platform/SocMwEvents.h"

#include <cerrno>
#include <stop_token>

namespace desktop {

namespace {

constexpr std::chrono::milliseconds kInterval(200);

using Keys = std::vector<std::string>;

/// What is grouped, and by what.
struct GroupRequest {
    OpenedFolder folder;
    GroupFileType type;
    LocationOpener opener;
    std::shared_ptr<MetadataCatalog> catalog;
};

/// One grouping at work, on its own thread.
class GroupRun {
public:
    GroupRun(const GroupRequest& request, std::stop_token cancelled)
        : m_folder(request.folder)
        , m_type(request.type)
        , m_catalog(*request.catalog)
        , m_reporter(request.opener.reporter())
        , m_cancelled(std::move(cancelled))
        , m_readers(request.catalog, m_cancelled)
    {
    }

    /// 0, or why it ended early as an errno value.
    int run()
    {
        TreeWalk walk(
            m_folder.location, m_cancelled, [this](std::string_view name) { return mayMatch(name); },
            [this](const WalkedFolder& folder, const WalkTotals&) { inspectFiles(folder); });
        const int error = walk.run();
        m_readers.finish();
        m_unreadableFolders = walk.totals().unreadable;
        return m_cancelled.stop_requested() ? ECANCELED : error;
    }

    MediaEntries takeEntries() { return std::move(m_entries); }
    /// What the groups may lack, as describeUnreadable() says it.
    std::string unreadable() const { return describeUnreadable(m_unreadableFolders, m_unreadableFiles); }

private:
    bool mayMatch(std::string_view name) const
    {
        const FileType byName = typeByExtension(name);
        return byName == FILE_TYPE_UNKNOWN || isGrouped(byName, m_type);
    }

    void inspectFiles(const WalkedFolder& folder)
    {
        if (folder.files.empty()) {
            return;
        }
        const std::string directory = m_folder.directoryOf(folder.location);
        const KnownFiles known = m_catalog.known(folder.location);
        UnreadableFiles unreadable;
        for (const std::string& name : folder.files) {
            const auto entry = m_cancelled.stop_requested() ? std::nullopt : inspectFile(folder.fd, name);
            if (entry && isGrouped(entry->type, m_type)) {
                const MediaMetadata* metadata = known.find(name, stampOf(*entry));
                m_entries.push_back(
                    {describeEntry(directory, name, *entry), metadata != nullptr ? *metadata : MediaMetadata()});
                if (metadata == nullptr &&
                    !m_readers.add(folder.location, folder.fd, name, *entry, intoEntry(m_entries.back()))) {
                    ++m_unreadableFiles;
                }
                reportProgress();
            } else if (entry && entry->type == FILE_TYPE_UNKNOWN) {
                unreadable.add(errno);
            }
        }
        m_unreadableFiles += unreadable.log(folder.location);
    }

    static MetadataReadPool::Done intoEntry(MediaEntry& entry)
    {
        return [&entry](MediaMetadata metadata) { entry.metadata = std::move(metadata); };
    }

    void reportProgress()
    {
        if (m_reportTimer.due() && !m_cancelled.stop_requested()) {
            m_reporter.progress(m_folder.directory, m_entries.size());
        }
    }

    const OpenedFolder& m_folder;
    const GroupFileType m_type;
    MetadataCatalog& m_catalog;
    ReadReporter& m_reporter;
    std::stop_token m_cancelled;
    MediaEntries m_entries; ///< of which the readers fill in the metadata
    MetadataReadPool m_readers;
    std::size_t m_unreadableFolders = 0;
    std::size_t m_unreadableFiles = 0; ///< of which it is not known whether, or in which group, they belong here
    IntervalTimer m_reportTimer{kInterval};
};

void postKeys(RequestAnswers& answers, Keys keys)
{
    answers.end(SOCMW_MM_EVENT_GROUP_COMPLETED, std::make_shared<Keys>(std::move(keys)));
}

void postFailure(RequestAnswers& answers, const GroupRequest& request, int error)
{
    const std::string& directory = request.folder.directory;
    const std::string reason = describeError(error);
    logLine(LogLevel::Warning, "the grouping of " + directory + " has ended early: " + reason);
    request.opener.reporter().failed(directory, reason);
    postKeys(answers, {});
}

// Fills in what has been read since the entries were made.
void applyMetadata(MediaEntries& entries)
{
    for (MediaEntry& entry : entries) {
        if (entry.metadata.panorama) {
            markPanorama(entry.file);
        }
        if (!entry.metadata.title.empty()) {
            entry.file.title = entry.metadata.title;
        }
    }
}

void logMissing(const std::string& key)
{
    logLine(LogLevel::Warning, "there is no group " + key);
}

} // namespace

Grouping::Grouping(LocationOpener opener, std::shared_ptr<MetadataCatalog> catalog, EventQueue& events)
    : m_opener(std::move(opener))
    , m_catalog(std::move(catalog))
    , m_job(events)
{
}

bool Grouping::start(const std::string& directory, GroupFileType type)
{
    m_job.cancel();
    m_result = std::make_shared<Result>();
    if (!areGroups(type)) {
        logLine(LogLevel::Warning, "files cannot be grouped by type " + std::to_string(type));
        return false;
    }
    auto folder = m_opener.openFolder(directory);
    if (!folder) {
        return false;
    }
    const auto request = std::make_shared<GroupRequest>(GroupRequest{std::move(*folder), type, m_opener, m_catalog});
    m_job.start(
        request->folder.location.volume,
        [request, result = m_result](const std::stop_token& cancelled, RequestAnswers& answers) {
            GroupRun run(*request, cancelled);
            const int error = run.run();
            if (error == ECANCELED) {
                return;
            }
            if (error != 0) {
                postFailure(answers, *request, error);
                return;
            }
            if (const std::string unreadable = run.unreadable(); !unreadable.empty()) {
                request->opener.reporter().failed(request->folder.directory, unreadable);
            }
            MediaEntries entries = run.takeEntries();
            applyMetadata(entries);
            const auto groups = std::make_shared<const Groups>(std::move(entries), request->type);
            {
                const LockGuard lock(result->mutex);
                result->groups = groups;
            }
            postKeys(answers, groups->keys());
        },
        [request](RequestAnswers& answers) { postFailure(answers, *request, ENODEV); });
    return true;
}

std::optional<std::vector<MediaEntry>> Grouping::list(const std::string& key, int number, GroupOrder order)
{
    m_number = number;
    m_order = order;
    auto entries = group(key, order);
    if (!entries) {
        logMissing(key);
    } else if (number > 0 && entries->size() > static_cast<std::size_t>(number)) {
        entries->resize(static_cast<std::size_t>(number));
    }
    return entries;
}

std::optional<std::vector<FolderFileInfo_s>> Grouping::page(const std::string& key, int page) const
{
    const EntryList files = entries(key, m_order);
    if (files == nullptr) {
        logMissing(key);
        return std::nullopt;
    }
    return cutPage(*files, page, m_number);
}

EntryList Grouping::entries(const std::string& key, GroupOrder order) const
{
    const auto entries = group(key, order);
    if (!entries) {
        return nullptr;
    }
    auto files = std::make_shared<std::vector<FolderFileInfo_s>>();
    for (const MediaEntry& entry : *entries) {
        files->push_back(entry.file);
    }
    return files;
}

// All of the group.
std::optional<std::vector<MediaEntry>> Grouping::group(const std::string& key, GroupOrder order) const
{
    const LockGuard lock(m_result->mutex);
    const auto files = m_result->groups != nullptr ? m_result->groups->files(key, order) : std::nullopt;
    if (!files) {
        return std::nullopt;
    }
    std::vector<MediaEntry> entries;
    entries.reserve(files->size());
    for (const MediaEntry* file : *files) {
        entries.push_back(*file);
    }
    return entries;
}

} // namespace desktop
