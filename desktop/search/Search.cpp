#include "desktop/search/Search.h"

#include "desktop/base/IntervalTimer.h"
#include "desktop/base/Log.h"
#include "desktop/files/MediaTypes.h"
#include "desktop/files/TreeWalk.h"
#include "desktop/files/UnreadableFiles.h"
#include "desktop/jobs/BoundedWorkQueue.h"
#include "desktop/metadata/EntryDescription.h"

#include "platform/SocMwEvents.h"

#include <atomic>
#include <json/json.h>

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <stop_token>

namespace desktop {

namespace {

// Results are sent at least this often, and at this number, whatever the page size.
constexpr std::chrono::milliseconds kInterval(200);
constexpr int kMaxFiles = 1000;
// How many folders the walk may be ahead of the inspection of their files; each may hold a descriptor.
constexpr std::size_t kMaxAhead = 16;

/// What is searched for, and where.
struct SearchRequest {
    OpenedFolder folder;
    FileType type;
    int itemsPerPage;
    LocationOpener opener;
};

/// How far a search has come; the thread that learns of a removed volume reads it.
struct SearchCounts {
    std::atomic<std::size_t> found{0};
    std::atomic<std::size_t> folders{0};
    std::atomic<std::size_t> unreadable{0};      ///< folders
    std::atomic<std::size_t> unreadableFiles{0}; ///< of which it is not known whether they are of the type
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

void postEnd(RequestAnswers& answers, const std::string& directory, const SearchCounts& counts, int error)
{
    Json::Value end;
    end["dirpath"] = directory;
    end["total"] = static_cast<Json::UInt64>(counts.found);
    end["folders"] = static_cast<Json::UInt64>(counts.folders);
    end["unreadable"] = static_cast<Json::UInt64>(counts.unreadable);
    end["unreadableFiles"] = static_cast<Json::UInt64>(counts.unreadableFiles);
    if (error != 0) {
        end["error"] = describeError(error);
        logLine(LogLevel::Warning, "the search of " + directory + " has ended early: " + describeError(error));
    }
    answers.end(SOCMW_MM_EVENT_FB_FOLDER_UPDATE, std::make_shared<Json::Value>(std::move(end)));
}

/// A folder that the walk has found, to be inspected while the walk continues.
struct FolderToSearch {
    UniqueFd fd;   ///< of none that has no files
    int error = 0; ///< why there is no descriptor though there are files, as an errno value
    Location location;
    std::vector<std::string> files;
    WalkTotals totals; ///< of the walk until then
};

FolderToSearch forSearching(const WalkedFolder& folder, const WalkTotals& totals)
{
    UniqueFd fd(folder.files.empty() ? -1 : fcntl(folder.fd, F_DUPFD_CLOEXEC, 0));
    const int error = fd || folder.files.empty() ? 0 : errno;
    return {std::move(fd), error, folder.location, folder.files, totals};
}

/// One search at work, on two threads: one walks, the other inspects the files and sends the results.
class SearchRun {
public:
    SearchRun(const SearchRequest& request, RequestAnswers& answers, std::stop_token cancelled, SearchCounts& counts)
        : m_request(request)
        , m_answers(answers)
        , m_cancelled(std::move(cancelled))
        , m_counts(counts)
        , m_pageSize(request.itemsPerPage > 0 ? std::min(request.itemsPerPage, kMaxFiles) : kMaxFiles)
    {
    }

    void run()
    {
        BoundedWorkQueue<FolderToSearch> walked(kMaxAhead, [this](FolderToSearch& folder) {
            inspectFiles(folder);
            reportProgress(folder.totals);
        });
        TreeWalk walk(
            m_request.folder.location, m_cancelled, [this](std::string_view name) { return mayMatch(name); },
            [&walked](const WalkedFolder& folder, const WalkTotals& totals) {
                FolderToSearch next = forSearching(folder, totals);
                if (next.error == EMFILE || next.error == ENFILE) {
                    walked.waitUntilIdle(); // those before it hold the descriptors
                    next = forSearching(folder, totals);
                }
                walked.put(std::move(next));
            });
        const int error = walk.run();
        walked.finish();
        if (error != ECANCELED) {
            sendFound();
            reportProgress(walk.totals());
            postEnd(m_answers, m_request.folder.directory, m_counts, error);
        }
    }

private:
    bool mayMatch(std::string_view name) const
    {
        const FileType byName = typeByExtension(name);
        return byName == m_request.type || byName == FILE_TYPE_UNKNOWN;
    }

    void inspectFiles(const FolderToSearch& folder)
    {
        if (folder.files.empty()) {
            return;
        }
        const std::string directory = m_request.folder.directoryOf(folder.location);
        UnreadableFiles unreadable;
        for (const std::string& name : folder.files) {
            const auto status = m_cancelled.stop_requested() ? std::nullopt : inspectFile(folder.fd.get(), name);
            if (status && status->type == m_request.type) {
                add(describeEntry(directory, name, *status));
            } else if (status && status->type == FILE_TYPE_UNKNOWN) {
                unreadable.add(folder.error != 0 ? folder.error : errno);
            }
        }
        m_counts.unreadableFiles += unreadable.log(folder.location);
    }

    void add(const FolderFileInfo_s& file)
    {
        ++m_counts.found;
        m_files.append(listEntry(file));
        if (static_cast<int>(m_files.size()) == m_pageSize) {
            sendFound();
        }
    }

    void reportProgress(const WalkTotals& totals)
    {
        m_counts.folders = totals.folders;
        m_counts.unreadable = totals.unreadable;
        if (m_reportTimer.due() && !m_cancelled.stop_requested()) {
            sendFound();
            m_request.opener.reporter().progress(m_request.folder.directory, totals.entries);
        }
    }

    void sendFound()
    {
        if (m_files.empty()) {
            return;
        }
        Json::Value piece;
        piece["dirpath"] = m_request.folder.directory;
        piece["filecount"] = m_files.size();
        piece["filelst"] = std::move(m_files);
        m_files = Json::Value(Json::arrayValue);
        m_answers.piece(SOCMW_MM_EVENT_FILTER_DATA_READY_UPDATE, std::make_shared<Json::Value>(std::move(piece)));
    }

    const SearchRequest& m_request;
    RequestAnswers& m_answers;
    std::stop_token m_cancelled;
    SearchCounts& m_counts;
    const int m_pageSize;
    Json::Value m_files{Json::arrayValue}; ///< found but not yet sent
    IntervalTimer m_reportTimer{kInterval};
};

} // namespace

Search::Search(LocationOpener opener, EventQueue& events)
    : m_opener(std::move(opener))
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
    const auto request = std::make_shared<SearchRequest>(SearchRequest{std::move(*folder), type, itemsPerPage, m_opener});
    const auto counts = std::make_shared<SearchCounts>();
    m_job.start(
        request->folder.location.volume,
        [request, counts](const std::stop_token& cancelled, RequestAnswers& answers) {
            SearchRun(*request, answers, cancelled, *counts).run();
        },
        [request, counts](RequestAnswers& answers) { postEnd(answers, request->folder.directory, *counts, ENODEV); });
    return true;
}

} // namespace desktop
