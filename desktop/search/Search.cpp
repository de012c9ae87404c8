#include "desktop/search/Search.h"

#include "desktop/base/Log.h"
#include "desktop/base/Pace.h"
#include "desktop/files/MediaTypes.h"
#include "desktop/files/TreeWalk.h"
#include "desktop/jobs/Conveyor.h"
#include "desktop/metadata/EntryDescription.h"

#include "platform/SocMwEvents.h"

#include <json/json.h>

#include <fcntl.h>

#include <algorithm>
#include <cerrno>

namespace desktop {

namespace {

// What has been found is told so often at least, and when it is so much, whatever the page size.
constexpr std::chrono::milliseconds kInterval(200);
constexpr int kMostFiles = 1000;
// So many folders the walk may be ahead of the looks at their files; each may hold a descriptor.
constexpr std::size_t kMostAhead = 64;

/// What is looked for, where.
struct Wanted {
    OpenedFolder folder;
    FileType type;
    int itemsPerPage;
    LocationOpener opener;
    std::shared_ptr<MediaLibrary> library;
};

/// How far a search has come; the thread that learns of a pulled stick reads it.
struct Tally {
    std::atomic<std::size_t> found{0};
    std::atomic<std::size_t> folders{0};
    std::atomic<std::size_t> unreadable{0};
};

Json::Value listEntry(const FolderFileInfo_s& file)
{
    using Key = Json::StaticString; // a key that need not be copied for each file
    Json::Value entry;
    entry[Key("path")] = file.path;
    entry[Key("name")] = file.name;
    entry[Key("title")] = file.title;
    entry[Key("ctime")] = file.ctime;
    entry[Key("size")] = static_cast<Json::UInt64>(file.size);
    entry[Key("type")] = file.type;
    return entry;
}

void postEnd(RequestAnswers& answers, const std::string& directory, const Tally& tally, int error)
{
    Json::Value end;
    end["dirpath"] = directory;
    end["total"] = static_cast<Json::UInt64>(tally.found);
    end["folders"] = static_cast<Json::UInt64>(tally.folders);
    end["unreadable"] = static_cast<Json::UInt64>(tally.unreadable);
    if (error != 0) {
        end["error"] = describeError(error);
        logLine(LogLevel::Warning, "the search of " + directory + " has ended early: " + describeError(error));
    }
    answers.end(SOCMW_MM_EVENT_FB_FOLDER_UPDATE, std::make_shared<Json::Value>(std::move(end)));
}

/// A folder that the walk has come to, to be looked at after the walk has gone on.
struct FolderToSearch {
    UniqueFd fd; ///< of none that has no files
    Location location;
    std::vector<std::string> files;
    WalkTotals totals; ///< of the walk until then
};

FolderToSearch kept(const WalkedFolder& folder, const WalkTotals& totals)
{
    UniqueFd fd(folder.files.empty() ? -1 : fcntl(folder.fd, F_DUPFD_CLOEXEC, 0));
    return {std::move(fd), folder.location, folder.files, totals};
}

/// One search at work, on two threads: one walks, the other looks at what may fit and tells of it.
class SearchRun {
public:
    SearchRun(const Wanted& wanted, RequestAnswers& answers, CancelFlag cancelled, Tally& tally)
        : m_wanted(wanted)
        , m_answers(answers)
        , m_cancelled(std::move(cancelled))
        , m_tally(tally)
        , m_pageSize(wanted.itemsPerPage > 0 ? std::min(wanted.itemsPerPage, kMostFiles) : kMostFiles)
    {
    }

    void run()
    {
        Conveyor<FolderToSearch> walked(kMostAhead, [this](FolderToSearch& folder) {
            lookAt(folder);
            keepTelling(folder.totals);
        });
        TreeWalk walk(
            m_wanted.folder.location, m_cancelled, [this](std::string_view name) { return mayFit(name); },
            [&walked](const WalkedFolder& folder, const WalkTotals& totals) { walked.put(kept(folder, totals)); });
        const int error = walk.run();
        walked.finish();
        if (error != ECANCELED) {
            tell();
            keepTelling(walk.totals());
            postEnd(m_answers, m_wanted.folder.directory, m_tally, error);
        }
    }

private:
    bool mayFit(std::string_view name) const
    {
        const FileType byName = typeByExtension(name);
        return byName == m_wanted.type || byName == FILE_TYPE_UNKNOWN;
    }

    void lookAt(const FolderToSearch& folder)
    {
        if (folder.files.empty()) {
            return;
        }
        const std::string directory = m_wanted.folder.directoryOf(folder.location);
        const KnownFiles known = knownFiles(m_wanted.library, folder.location);
        for (const std::string& name : folder.files) {
            const auto facts = *m_cancelled ? std::nullopt : inspectFile(folder.fd.get(), name);
            if (facts && facts->type == m_wanted.type) {
                add(describeEntry(directory, name, *facts, known.find(name, stampOf(*facts))));
            }
        }
    }

    void add(const FolderFileInfo_s& file)
    {
        ++m_tally.found;
        m_files.append(listEntry(file));
        if (static_cast<int>(m_files.size()) == m_pageSize) {
            tell();
        }
    }

    void keepTelling(const WalkTotals& totals)
    {
        m_tally.folders = totals.folders;
        m_tally.unreadable = totals.unreadable;
        if (m_pace.due() && !*m_cancelled) {
            tell();
            m_wanted.opener.reporter().progress(m_wanted.folder.directory, totals.entries);
        }
    }

    void tell()
    {
        if (m_files.empty()) {
            return;
        }
        Json::Value piece;
        piece["dirpath"] = m_wanted.folder.directory;
        piece["filecount"] = m_files.size();
        piece["filelst"] = std::move(m_files);
        m_files = Json::Value(Json::arrayValue);
        m_answers.piece(SOCMW_MM_EVENT_FILTER_DATA_READY_UPDATE, std::make_shared<Json::Value>(std::move(piece)));
    }

    const Wanted& m_wanted;
    RequestAnswers& m_answers;
    CancelFlag m_cancelled;
    Tally& m_tally;
    const int m_pageSize;
    Json::Value m_files{Json::arrayValue}; ///< found but not yet told
    Pace m_pace{kInterval};
};

} // namespace

Search::Search(LocationOpener opener, std::shared_ptr<MediaLibrary> library, EventQueue& events)
    : m_opener(std::move(opener))
    , m_library(std::move(library))
    , m_job(events)
{
}

bool Search::start(const std::string& directory, FileType type, int itemsPerPage)
{
    m_job.cancel();
    auto folder = m_opener.openFolder(directory);
    if (!folder) {
        return false;
    }
    const auto wanted = std::make_shared<Wanted>(Wanted{std::move(*folder), type, itemsPerPage, m_opener, m_library});
    const auto tally = std::make_shared<Tally>();
    m_job.start(
        wanted->folder.location.stick,
        [wanted, tally](const CancelFlag& cancelled, RequestAnswers& answers) {
            SearchRun(*wanted, answers, cancelled, *tally).run();
        },
        [wanted, tally](RequestAnswers& answers) { postEnd(answers, wanted->folder.directory, *tally, ENODEV); });
    return true;
}

} // namespace desktop
