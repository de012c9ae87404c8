#include "desktop/cli/Session.h"

#include "desktop/cli/ErrorMessage.h"
#include "desktop/cli/TextColumns.h"

#include "desktop/files/EntryStatus.h"
#include "desktop/files/PathResolver.h"
#include "desktop/text/NameEncoding.h"

#include <algorithm>
#include <cerrno>

namespace desktop {

namespace {

constexpr const char* kChannel = "desktop-tv";
constexpr const char* kThumbnails = "storagemedia.start.thumbnail";
constexpr const char* kChangeDirectory = "storagemedia.folder.chgdir";
constexpr const char* kReadPage = "storagemedia.get.pagefiles";

bool endsWith(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

std::string cancelOf(const std::string& command)
{
    return command == kThumbnails ? "storagemedia.stop.thumbnail" : "storagemedia.folder.user.cancel";
}

bool isAnswerTo(const Notification& notification, const Json::Value& request)
{
    return notification.source == kChannel && notification.body.isObject() && notification.body["reqId"] == request["reqId"];
}

} // namespace

Session::Session(HostClient& client, bool takesMountedSticks, const FileDetails& details, Output& output,
                 const Interrupts& interrupts)
    : m_client(client)
    , m_takesMountedSticks(takesMountedSticks)
    , m_details(details)
    , m_output(output)
    , m_interrupts(interrupts)
{
}

Session::~Session()
{
    m_client.execute("storagemedia.close.mmbroswer");
}

bool Session::enter()
{
    Json::Value session;
    Json::Value request;
    request["srctype"] = 0;
    if (!execute("storagemedia.media.entermmbroswer", request, session)) {
        return fail("the media browser", "The plugin refuses to enter it");
    }
    m_devices = session["devlist"];
    return !m_devices.empty() ||
           fail("no stick", m_takesMountedSticks ? "Nothing is mounted under /media, /run/media or /mnt"
                                                 : "None of the folders given exists");
}

std::string Session::pathOf(const std::string& typed)
{
    // As typed: bad bytes are escaped, and a path pasted from a listing keeps its escapes.
    const std::string path = escapeBadBytes(typed);
    const std::string first = m_devices[0]["path"].asString();
    if (path.empty() || path.front() == '/') {
        return path.empty() ? first : path;
    }
    for (const Json::Value& device : m_devices) {
        Json::Value request;
        request["dirpath"] = device["path"].asString() + "/" + path;
        Json::Value described;
        if (m_devices.size() == 1 || execute("storagemedia.media.getinfo", request, described)) {
            return request["dirpath"].asString();
        }
    }
    return first + "/" + path;
}

std::vector<std::string> Session::foldersOf(const std::string& typed)
{
    if (!typed.empty()) {
        return {pathOf(typed)};
    }
    std::vector<std::string> folders;
    for (const Json::Value& device : m_devices) {
        folders.push_back(device["path"].asString());
    }
    return folders;
}

bool Session::execute(const std::string& command, const Json::Value& request, Json::Value& reply)
{
    CommandReply executed = m_client.execute(command, request);
    reply = std::move(executed.body);
    return executed.result;
}

bool Session::query(const std::string& command, const Json::Value& request, const std::string& what, Json::Value& reply)
{
    skipUpdates();
    return execute(command, request, reply) || failRefused(what);
}

bool Session::ask(const std::string& command, Json::Value request, const std::string& what, const AnswerHandler& handle)
{
    request["channelId"] = kChannel;
    request["reqId"] = std::to_string(++m_requests);
    skipUpdates();
    const bool accepted = m_client.execute(command, request).result;
    const auto end = m_client.waitForAnswers(HostClient::kAnswerTimeout, [&](const HostUpdate& update) {
        handleUpdate(update);
        const auto* notification = std::get_if<Notification>(&update);
        if (notification != nullptr && isAnswerTo(*notification, request)) {
            handle(notification->body, endsWith(notification->name, ".complete"));
        }
    });
    m_progress.clear();
    if (end != HostClient::WaitResult::Answered) {
        m_client.execute(cancelOf(command));
        return end != HostClient::WaitResult::Interrupted && fail(what, "No answer has come");
    }
    if (!accepted) {
        return failRefused(what);
    }
    const std::string failure = readFailure(what); // an empty answer may be one that could not be given
    return failure.empty() || fail(what, failure);
}

std::optional<Json::Value> Session::describe(const std::string& path)
{
    Json::Value request;
    request["dirpath"] = path;
    Json::Value info;
    if (!query("storagemedia.media.getinfo", request, path, info)) {
        return std::nullopt;
    }
    const MediaDetails details = m_details.of(path);
    for (const auto& [key, value] : {std::pair{"title", details.title}, {"year", details.year}, {"taken", details.taken}}) {
        if (!value.empty()) {
            info[key] = value;
        }
    }
    return info;
}

std::optional<int> Session::changeDirectory(const std::string& directory, int pageSize)
{
    Json::Value request;
    request["number"] = pageSize;
    request["dirpath"] = directory;
    int entries = 0;
    const bool changed = ask(kChangeDirectory, request, directory,
                             [&](const Json::Value& body, bool) { entries = body["filecount"].asInt(); });
    return changed ? std::optional<int>(entries) : std::nullopt;
}

std::optional<Json::Value> Session::readPage(const std::string& directory, int page)
{
    Json::Value request;
    request["pageid"] = page;
    request["type"] = 1; // the current list, which stays as it was read
    Json::Value reply;
    if (!execute(kReadPage, request, reply)) {
        fail(directory, "Page " + std::to_string(page + 1) + " cannot be listed");
        return std::nullopt;
    }
    return std::move(reply["filelst"]);
}

std::string Session::readFailure(const std::string& path)
{
    noteFailures();
    const auto found = m_readFailures.find(withoutTrailingSlash(path));
    return found != m_readFailures.end() ? found->second : "";
}

// The answer to the change would carry all entries, so the change is cancelled. An answer that still comes is not waited
// for.
bool Session::setPageSize(const std::string& directory, int pageSize)
{
    Json::Value request;
    request["number"] = pageSize;
    request["dirpath"] = directory;
    request["channelId"] = kChannel;
    request["reqId"] = std::to_string(++m_requests);
    Json::Value ignored;
    const bool accepted = query(kChangeDirectory, request, directory, ignored);
    execute(cancelOf(kChangeDirectory), Json::Value(Json::objectValue), ignored);
    return accepted;
}

// A long directory takes longer to read than the platform lets a page wait, but the reading goes on.
std::optional<Json::Value> Session::readPageOf(const std::string& list, int page)
{
    Json::Value request;
    request["pageid"] = page;
    request["type"] = 0; // by its path
    request["dirpath"] = list;
    Json::Value reply;
    skipUpdates();
    while (!execute(kReadPage, request, reply)) {
        if (stopped() || !noteFailures()) {
            failRefused(list);
            return std::nullopt;
        }
        m_progress.show("Reading " + visibleText(list));
    }
    m_progress.clear();
    return std::move(reply["filelst"]);
}

bool Session::fail(const std::string& what, const std::string& why)
{
    m_failed = true;
    if (!failIfPulled(what)) {
        m_progress.clear();
        printError(what + ": " + why);
    }
    return false;
}

bool Session::failIfPulled(const std::string& path)
{
    const std::string stick = stickOf(path);
    if (stick.empty() || !hasBeenPulled(stick)) {
        return false;
    }
    m_failed = true;
    if (m_pulledSticks.insert(stick).second) {
        m_progress.clear();
        printError(stick + ": " + describeError(ENODEV));
    }
    return true;
}

bool Session::failRefused(const std::string& what)
{
    noteFailures();
    return fail(what, m_latestFailure.empty() ? "The plugin refuses it; --log-level warning tells more" : m_latestFailure);
}

// The stick that @p path lies on, the innermost; empty when that is none.
std::string Session::stickOf(const std::string& path) const
{
    std::string stick;
    for (const Json::Value& device : m_devices) {
        const std::string folder = device["path"].asString();
        stick = liesIn(path, folder) && folder.size() > stick.size() ? folder : stick;
    }
    return stick;
}

// The folder may have gone before it has been noticed.
bool Session::hasBeenPulled(const std::string& stick)
{
    Json::Value request;
    request["srctype"] = 0;
    Json::Value now;
    execute("storagemedia.media.entermmbroswer", request, now);
    const bool isListed = std::any_of(now["devlist"].begin(), now["devlist"].end(),
                                      [&stick](const Json::Value& device) { return device["path"] == stick; });
    const auto status = statusWithoutWaiting(decodeName(stick), STATX_TYPE);
    return !isListed || (!status && errno == ENOENT);
}

int Session::exitStatus() const
{
    if (m_interrupts.pending()) {
        return m_interrupts.exitStatus();
    }
    return m_failed ? 1 : 0;
}

// Updates that belong to earlier commands.
void Session::skipUpdates()
{
    m_client.takeUpdates([](const HostUpdate&) {});
    m_readFailures.clear();
    m_latestFailure.clear();
}

void Session::handleUpdate(const HostUpdate& update)
{
    noteFailure(update);
    if (const auto* progress = std::get_if<FolderProgress>(&update)) {
        m_progress.show(std::to_string(progress->entries) + " entries read of " + visibleText(progress->directory));
    }
}

void Session::noteFailure(const HostUpdate& update)
{
    if (const auto* failure = std::get_if<ReadFailure>(&update)) {
        m_readFailures[withoutTrailingSlash(failure->path)] = failure->reason;
        m_latestFailure = failure->reason;
    }
}

// Whether there are signs of work, too.
bool Session::noteFailures()
{
    bool works = false;
    m_client.takeUpdates([this, &works](const HostUpdate& update) {
        noteFailure(update);
        works = works || std::holds_alternative<FolderProgress>(update);
    });
    return works;
}

} // namespace desktop
