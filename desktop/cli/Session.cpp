#include "desktop/cli/Session.h"

#include "desktop/cli/TextColumns.h"

#include "desktop/text/NameEncoding.h"

#include <cstdio>

namespace desktop {

namespace {

constexpr int kPatienceMs = 30'000; // without any sign of work

constexpr const char* kThumbnails = "storagemedia.start.thumbnail";

bool endsWith(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

std::string cancelOf(const std::string& command)
{
    return command == kThumbnails ? "storagemedia.stop.thumbnail" : "storagemedia.folder.user.cancel";
}

Json::Value noRequest()
{
    return Json::Value(Json::objectValue);
}

} // namespace

Session::Session(TelevisionSettings settings, Output& output, const Interrupts& interrupts)
    : m_output(output)
    , m_interrupts(interrupts)
    , m_takesMounted(settings.desktop.mountedSticks)
    , m_television(listening(std::move(settings)))
{
}

Session::~Session()
{
    Json::Value reply;
    m_television.execute("storagemedia.close.mmbroswer", noRequest(), reply);
}

TelevisionSettings Session::listening(TelevisionSettings settings)
{
    settings.notified = [this](const std::string&, const std::string& name, const Json::Value& body) { hear(name, body); };
    settings.desktop.observer.progress = [this](const std::string& directory, std::size_t entries) {
        m_progress.show(std::to_string(entries) + " entries read of " + visibleText(directory));
    };
    settings.desktop.observer.failed = [this](const std::string&, const std::string& reason) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_failure = reason;
    };
    return settings;
}

bool Session::enter()
{
    Json::Value session;
    Json::Value request;
    request["srctype"] = 0;
    if (!m_television.execute("storagemedia.media.entermmbroswer", request, session)) {
        return fail("the media browser", "The plugin refuses to enter it");
    }
    m_devices = session["devlist"];
    return !m_devices.empty() || fail("no stick", m_takesMounted ? "Nothing is mounted under /media, /run/media or /mnt"
                                                                 : "None of the folders given exists");
}

std::string Session::pathOf(const std::string& typed) const
{
    // As typed: bad bytes are escaped, and a path pasted from a listing keeps its escapes.
    const std::string path = escapeBadBytes(typed);
    const std::string first = m_devices[0]["path"].asString();
    if (path.empty()) {
        return first;
    }
    return path.front() == '/' ? path : first + "/" + path;
}

bool Session::execute(const std::string& command, const Json::Value& request, Json::Value& reply)
{
    return m_television.execute(command, request, reply);
}

bool Session::query(const std::string& command, const Json::Value& request, const std::string& what, Json::Value& reply)
{
    takeFailure(); // of something before
    return execute(command, request, reply) || failRefused(what);
}

bool Session::ask(const std::string& command, Json::Value request, const std::string& what, const Heard& heard)
{
    request["channelId"] = "desktop-tv";
    request["reqId"] = std::to_string(++m_requests);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_heard = heard;
        m_failure.clear();
    }
    Json::Value reply;
    const bool accepted = m_television.execute(command, request, reply);
    const PendingAnswers::Wait end = m_television.answers().wait(m_interrupts, kPatienceMs);
    stopListening();
    m_progress.clear();
    if (end != PendingAnswers::Wait::Answered) {
        m_television.execute(cancelOf(command), noRequest(), reply);
        return end == PendingAnswers::Wait::TimedOut && fail(what, "No answer has come");
    }
    return accepted || failRefused(what);
}

std::optional<int> Session::changeDirectory(const std::string& directory, int pageSize)
{
    Json::Value request;
    request["number"] = pageSize;
    request["dirpath"] = directory;
    int entries = 0;
    std::string failure;
    const bool changed = ask("storagemedia.folder.chgdir", request, directory, [&](const Json::Value& body, bool) {
        entries = body["filecount"].asInt();
        failure = m_failure; // an empty listing may be one that could not be read
    });
    if (changed && !failure.empty()) {
        fail(directory, failure);
    }
    return changed && failure.empty() ? std::optional<int>(entries) : std::nullopt;
}

std::optional<Json::Value> Session::readPage(const std::string& directory, int page)
{
    Json::Value request;
    request["pageid"] = page;
    request["type"] = 1; // the current list, which stays as it was read
    Json::Value reply;
    if (!m_television.execute("storagemedia.get.pagefiles", request, reply)) {
        fail(directory, "Page " + std::to_string(page + 1) + " cannot be listed");
        return std::nullopt;
    }
    return std::move(reply["filelst"]);
}

bool Session::fail(const std::string& what, const std::string& why)
{
    m_progress.clear();
    std::fprintf(stderr, "desktop-tv: %s: %s\n", visibleText(what).c_str(), why.c_str());
    m_failed = true;
    return false;
}

bool Session::failRefused(const std::string& what)
{
    const std::string failure = takeFailure();
    return fail(what, failure.empty() ? "The plugin refuses it; --log-level warning tells more" : failure);
}

int Session::exitStatus() const
{
    if (m_interrupts.pending()) {
        return m_interrupts.exitStatus();
    }
    return m_failed ? 1 : 0;
}

void Session::hear(const std::string& name, const Json::Value& body)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_heard && body.isMember("reqId")) {
        m_heard(body, endsWith(name, ".complete"));
    }
}

void Session::stopListening()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_heard = nullptr;
}

std::string Session::takeFailure()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_failure, "");
}

} // namespace desktop
