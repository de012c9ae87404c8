#include "desktop/grouping/Grouping.h"

#include "desktop/base/Log.h"
#include "desktop/base/Pace.h"
#include "desktop/files/MediaTypes.h"
#include "desktop/files/TreeWalk.h"
#include "desktop/metadata/FactsReaders.h"
#include "desktop/text/NameEncoding.h"

#include "platform/SocMwEvents.h"

#include <cerrno>

namespace desktop {

namespace {

constexpr std::chrono::milliseconds kInterval(200);

using Keys = std::vector<std::string>;

/// One grouping at work, on its own thread.
class GroupRun {
public:
    GroupRun(const FolderToRead& folder, GroupFileType type, const FolderObserver& observer, CancelFlag cancelled)
        : m_folder(folder)
        , m_type(type)
        , m_observer(observer)
        , m_cancelled(std::move(cancelled))
        , m_readers(folder.library, m_cancelled)
    {
    }

    /// 0, or why it ended early as an errno value.
    int run()
    {
        TreeWalk walk(
            m_folder.location, m_cancelled, [this](std::string_view name) { return mayFit(name); },
            [this](const WalkedFolder& folder, const WalkTotals&) { lookAt(folder); });
        const int error = walk.run();
        m_readers.finish();
        return *m_cancelled ? ECANCELED : error;
    }

    MediaEntries takeEntries() { return std::move(m_entries); }

private:
    bool mayFit(std::string_view name) const
    {
        const FileType byName = typeByExtension(name);
        return byName == FILE_TYPE_UNKNOWN || isGrouped(byName, m_type);
    }

    void lookAt(const WalkedFolder& folder)
    {
        if (folder.files.empty()) {
            return;
        }
        const std::string below = folder.location.relative.substr(m_folder.location.relative.size());
        const std::string directory = m_folder.directory + encodeName(below);
        const KnownFiles known = m_folder.library->known(folder.location);
        for (const std::string& name : folder.files) {
            const auto entry = *m_cancelled ? std::nullopt : inspectFile(folder.fd, name);
            if (entry && isGrouped(entry->type, m_type)) {
                const MediaFacts* facts = known.find(name, stampOf(*entry));
                m_entries.push_back(
                    {describeEntry(directory, name, *entry, facts), facts != nullptr ? *facts : MediaFacts()});
                if (facts == nullptr) {
                    m_readers.add(folder.location, folder.fd, name, *entry, m_entries.back().facts);
                }
                tellProgress();
            }
        }
    }

    void tellProgress()
    {
        if (m_observer.progress && m_pace.due() && !*m_cancelled) {
            m_observer.progress(m_folder.directory, m_entries.size());
        }
    }

    const FolderToRead& m_folder;
    const GroupFileType m_type;
    const FolderObserver& m_observer;
    CancelFlag m_cancelled;
    MediaEntries m_entries; ///< of which the readers fill in the facts
    FactsReaders m_readers;
    Pace m_pace{kInterval};
};

void postKeys(RequestAnswers& answers, Keys keys)
{
    answers.end(SOCMW_MM_EVENT_GROUP_COMPLETED, std::make_shared<Keys>(std::move(keys)));
}

void postFailure(RequestAnswers& answers, const std::string& directory, int error, const FolderObserver& observer)
{
    const std::string reason = describeError(error);
    logLine(LogLevel::Warning, "the grouping of " + directory + " has ended early: " + reason);
    if (observer.failed) {
        observer.failed(directory, reason);
    }
    postKeys(answers, {});
}

// What a reading has told since the entry was made.
void nameByFacts(MediaEntries& entries)
{
    for (MediaEntry& entry : entries) {
        entry.file.isPhoto360 = entry.facts.panorama ? 1 : 0;
        if (!entry.facts.title.empty()) {
            entry.file.title = entry.facts.title;
        }
    }
}

} // namespace

Grouping::Grouping(const FolderListings& listings, EventQueue& events, FolderObserver observer)
    : m_listings(listings)
    , m_observer(std::move(observer))
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
    const auto folder = std::make_shared<FolderToRead>();
    if (!m_listings.openFolder(directory, *folder)) {
        return false;
    }
    m_job.start(
        folder->location.stick,
        [folder, type, observer = m_observer, result = m_result](const CancelFlag& cancelled, RequestAnswers& answers) {
            GroupRun run(*folder, type, observer, cancelled);
            const int error = run.run();
            if (error == ECANCELED) {
                return;
            }
            if (error != 0) {
                postFailure(answers, folder->directory, error, observer);
                return;
            }
            MediaEntries entries = run.takeEntries();
            nameByFacts(entries);
            const auto groups = std::make_shared<const Groups>(std::move(entries), type);
            {
                const std::lock_guard<std::mutex> lock(result->mutex);
                result->groups = groups;
            }
            postKeys(answers, groups->keys());
        },
        [folder, observer = m_observer](RequestAnswers& answers) {
            postFailure(answers, folder->directory, ENODEV, observer);
        });
    return true;
}

std::optional<std::vector<MediaEntry>> Grouping::list(const std::string& key, int number, GroupOrder order)
{
    m_number = number;
    m_order = order;
    auto entries = group(key);
    if (entries && number > 0 && entries->size() > static_cast<std::size_t>(number)) {
        entries->resize(static_cast<std::size_t>(number));
    }
    return entries;
}

std::optional<std::vector<FolderFileInfo_s>> Grouping::page(const std::string& key, int page) const
{
    const auto entries = group(key);
    if (!entries) {
        return std::nullopt;
    }
    Listing listing;
    for (const MediaEntry& entry : *entries) {
        listing.entries.push_back(entry.file);
    }
    return cutPage(listing, page, m_number);
}

// All of the group, in the order that the latest list asked for.
std::optional<std::vector<MediaEntry>> Grouping::group(const std::string& key) const
{
    const std::lock_guard<std::mutex> lock(m_result->mutex);
    const auto files = m_result->groups != nullptr ? m_result->groups->files(key, m_order) : std::nullopt;
    if (!files) {
        logLine(LogLevel::Warning, "there is no group " + key);
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
