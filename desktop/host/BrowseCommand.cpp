#include "desktop/host/BrowseCommand.h"

#include "desktop/host/EntryTable.h"
#include "desktop/host/ProgressLine.h"
#include "desktop/host/TextColumns.h"

#include "desktop/middleware/NameEncoding.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>

namespace desktop {

namespace {

constexpr int kPatienceMs = 30'000;
constexpr int kFetch = 1000; // entries asked for at a time when no pages are shown

/// What the plugin tells besides its replies, gathered from its threads.
class News {
public:
    void complete(const std::string& name, const Json::Value& body)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (name == "storagemedia.folder.chgdir.complete") {
            m_entries = body["filecount"].asInt();
        }
    }
    void fail(const std::string& reason)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_failure = reason;
    }
    int entries() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_entries;
    }
    /// Why reading has failed since the last call; empty when it has not.
    std::string takeFailure()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return std::exchange(m_failure, "");
    }

private:
    mutable std::mutex m_mutex;
    int m_entries = 0;
    std::string m_failure;
};

/// One run of the browse command.
class Browse {
public:
    Browse(Television& television, News& news, ProgressLine& progress, const BrowseOptions& options, Output& output,
           const Interrupts& interrupts)
        : m_television(television)
        , m_news(news)
        , m_progress(progress)
        , m_options(options)
        , m_output(output)
        , m_interrupts(interrupts)
        , m_coloured(output.isTerminal() && std::getenv("NO_COLOR") == nullptr)
    {
    }

    int run();

private:
    std::optional<std::string> enter();
    void showDevices(const Json::Value& devices);
    bool changeDirectory(const std::string& directory);
    std::vector<std::string> showFolder(const std::string& directory);
    void showPage(const std::string& directory, int page, EntryTotals& totals, std::vector<std::string>& folders);
    std::string startDirectory(const Json::Value& devices) const;
    bool fail(const std::string& what, const std::string& why);
    bool stopped() const { return m_interrupts.pending() || !m_output.good(); }
    int pageSize() const { return m_options.pageSize > 0 ? m_options.pageSize : kFetch; }

    Television& m_television;
    News& m_news;
    ProgressLine& m_progress;
    const BrowseOptions& m_options;
    Output& m_output;
    const Interrupts& m_interrupts;
    const bool m_coloured;
    int m_requests = 0;
    bool m_failed = false;
};

int Browse::run()
{
    std::vector<std::string> toShow; // the next one last
    if (const auto start = enter()) {
        toShow.push_back(*start);
    }
    while (!toShow.empty() && !stopped()) {
        const std::string directory = toShow.back();
        toShow.pop_back();
        const std::vector<std::string> folders = showFolder(directory);
        if (m_options.recursive) {
            toShow.insert(toShow.end(), folders.rbegin(), folders.rend());
        }
    }
    Json::Value reply;
    m_television.execute("storagemedia.close.mmbroswer", Json::Value(Json::objectValue), reply);
    if (m_interrupts.pending()) {
        return m_interrupts.exitStatus();
    }
    return m_failed ? 1 : 0;
}

// The directory to begin with; nothing, and the user told, when there is none.
std::optional<std::string> Browse::enter()
{
    Json::Value session;
    Json::Value request;
    request["srctype"] = 0;
    if (!m_television.execute("storagemedia.media.entermmbroswer", request, session)) {
        fail("the media browser", "The plugin refuses to enter it");
        return std::nullopt;
    }
    if (session["devlist"].empty()) {
        fail("no stick", "None of the folders given exists");
        return std::nullopt;
    }
    showDevices(session["devlist"]);
    return startDirectory(session["devlist"]);
}

void Browse::showDevices(const Json::Value& devices)
{
    std::size_t columns = 0;
    for (const Json::Value& device : devices) {
        columns = std::max(columns, displayWidth(visibleText(device["name"].asString())));
    }
    for (const Json::Value& device : devices) {
        Json::Value usage;
        std::string line = padRight(visibleText(device["name"].asString()), columns);
        if (m_television.execute("storagemedia.get.device.usage", device, usage)) {
            line += "  " + usage["used"].asString() + " of " + usage["total"].asString() + " used (" +
                    usage["useper"].asString() + "), " + usage["free"].asString() + " free";
        }
        m_output.write(line + "\n");
    }
    Json::Value usb;
    m_television.execute("storagemedia.check.usb.device", Json::Value(Json::objectValue), usb);
    m_output.write(std::string("USB mass storage on this computer: ") + (usb["plugin"].asBool() ? "yes" : "no") + "\n");
}

std::string Browse::startDirectory(const Json::Value& devices) const
{
    // As typed: bad bytes are escaped, and a path pasted from a listing keeps its escapes.
    const std::string path = escapeBadBytes(m_options.path);
    const std::string first = devices[0]["path"].asString();
    if (path.empty()) {
        return first;
    }
    return path.front() == '/' ? path : first + "/" + path;
}

bool Browse::changeDirectory(const std::string& directory)
{
    Json::Value request;
    request["channelId"] = "browse";
    request["reqId"] = std::to_string(++m_requests);
    request["number"] = pageSize();
    request["dirpath"] = directory;
    Json::Value reply;
    const bool accepted = m_television.execute("storagemedia.folder.chgdir", request, reply);
    const PendingAnswers::Wait end = m_television.answers().wait(m_interrupts, kPatienceMs);
    m_progress.clear();
    if (end == PendingAnswers::Wait::Interrupted) {
        m_television.execute("storagemedia.folder.user.cancel", Json::Value(Json::objectValue), reply);
        return false;
    }
    const std::string failure = m_news.takeFailure();
    if (end == PendingAnswers::Wait::TimedOut) {
        return fail(directory, "No answer has come");
    }
    return (accepted && failure.empty()) || fail(directory, failure);
}

// Returns the folders in it, in their order.
std::vector<std::string> Browse::showFolder(const std::string& directory)
{
    std::vector<std::string> folders;
    if (!changeDirectory(directory)) {
        return folders;
    }
    const int pages = std::max(1, (m_news.entries() + pageSize() - 1) / pageSize());
    if (m_options.page > pages) {
        fail(directory, "It has no page " + std::to_string(m_options.page) + ", only " + std::to_string(pages));
        return folders;
    }
    m_output.write("\n" + folderHeading(directory, m_coloured) + entryHeading(m_coloured));
    EntryTotals totals;
    const int first = m_options.page > 0 ? m_options.page - 1 : 0;
    const int end = m_options.page > 0 ? m_options.page : pages;
    for (int page = first; page < end && !stopped(); ++page) {
        if (m_options.pageSize > 0) {
            m_output.write("page " + std::to_string(page + 1) + " of " + std::to_string(pages) + "\n");
        }
        showPage(directory, page, totals, folders);
    }
    m_output.write(totals.text() + "\n");
    return folders;
}

void Browse::showPage(const std::string& directory, int page, EntryTotals& totals, std::vector<std::string>& folders)
{
    Json::Value request;
    request["pageid"] = page;
    request["type"] = 1; // the current list, which stays as it was read
    Json::Value reply;
    if (!m_television.execute("storagemedia.get.pagefiles", request, reply)) {
        fail(directory, "Page " + std::to_string(page + 1) + " cannot be listed");
        return;
    }
    std::string lines;
    for (const Json::Value& entry : reply["filelst"]) {
        lines += entryLine(entry, m_coloured);
        totals.add(entry);
        if (isFolder(entry)) {
            folders.push_back(entry["path"].asString());
        }
    }
    m_output.write(lines);
}

bool Browse::fail(const std::string& what, const std::string& why)
{
    m_progress.clear();
    std::fprintf(stderr, "desktop-tv: %s: %s\n", visibleText(what).c_str(), why.c_str());
    m_failed = true;
    return false;
}

} // namespace

int runBrowse(TelevisionSettings settings, const BrowseOptions& options, Output& output, const Interrupts& interrupts)
{
    News news;
    ProgressLine progress;
    settings.notified = [&news](const std::string&, const std::string& name, const Json::Value& body) {
        news.complete(name, body);
    };
    settings.desktop.observer.progress = [&progress](const std::string& directory, std::size_t entries) {
        progress.show(directory, entries);
    };
    settings.desktop.observer.failed = [&news](const std::string&, const std::string& reason) { news.fail(reason); };
    Television television(std::move(settings));
    return Browse(television, news, progress, options, output, interrupts).run();
}

} // namespace desktop
