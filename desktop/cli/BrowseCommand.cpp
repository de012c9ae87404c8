#include "desktop/cli/BrowseCommand.h"

#include "desktop/cli/EntryTable.h"
#include "desktop/cli/TextColumns.h"

#include "desktop/jobs/BackgroundJob.h"
#include "desktop/text/NameEncoding.h"

#include <sys/statfs.h>

#include <algorithm>
#include <stop_token>

namespace desktop {

namespace {

constexpr int kEntriesPerRequest = 1000; // when no pages are shown
constexpr std::chrono::seconds kUsageTimeout(2);

// The plugin asks the file system for the usage and waits for the answer without a timeout, so this is found out before.
bool fileSystemAnswers(const std::string& folder)
{
    return runWithin<bool>(kUsageTimeout,
                           [folder](const std::stop_token&) {
                               struct statfs status = {};
                               statfs(folder.c_str(), &status);
                               return true;
                           })
        .has_value();
}

/// One run of the browse command.
class Browse {
public:
    Browse(Session& session, const BrowseOptions& options, Output& output)
        : m_session(session)
        , m_options(options)
        , m_output(output)
        , m_coloured(output.isColoured())
    {
    }

    void run();

private:
    void showDevices();
    std::vector<std::string> showFolder(const std::string& directory);
    void showPage(const std::string& directory, int page, EntryTotals& totals, std::vector<std::string>& folders);
    int pageSize() const { return m_options.pageSize > 0 ? m_options.pageSize : kEntriesPerRequest; }

    Session& m_session;
    const BrowseOptions& m_options;
    Output& m_output;
    const bool m_coloured;
};

void Browse::run()
{
    if (!m_session.enter()) {
        return;
    }
    showDevices();
    std::vector<std::string> toShow = m_session.foldersOf(m_options.path);
    std::reverse(toShow.begin(), toShow.end()); // the last one is the next
    while (!toShow.empty() && !m_session.stopped()) {
        const std::string directory = toShow.back();
        toShow.pop_back();
        if (m_session.isOnPulledStick(directory)) {
            continue;
        }
        const std::vector<std::string> folders = showFolder(directory);
        if (m_options.recursive) {
            toShow.insert(toShow.end(), folders.rbegin(), folders.rend());
        }
    }
}

void Browse::showDevices()
{
    const Json::Value& devices = m_session.devices();
    std::size_t columns = 0;
    for (const Json::Value& device : devices) {
        columns = std::max(columns, displayWidth(visibleText(device["name"].asString())));
    }
    for (const Json::Value& device : devices) {
        Json::Value usage;
        std::string line = padRight(visibleText(device["name"].asString()), columns);
        if (!fileSystemAnswers(decodeName(device["path"].asString()))) {
            line += "  does not answer";
        } else if (m_session.execute("storagemedia.get.device.usage", device, usage)) {
            line += "  " + usage["used"].asString() + " of " + usage["total"].asString() + " used (" +
                    usage["useper"].asString() + "), " + usage["free"].asString() + " free";
        }
        m_output.write(line + "\n");
    }
    Json::Value usb;
    m_session.execute("storagemedia.check.usb.device", Json::Value(Json::objectValue), usb);
    m_output.write(std::string("USB mass storage on this computer: ") + (usb["plugin"].asBool() ? "yes" : "no") + "\n");
}

// Returns the folders in it, in the order in which they are listed.
std::vector<std::string> Browse::showFolder(const std::string& directory)
{
    std::vector<std::string> folders;
    const auto entries = m_session.changeDirectory(directory, pageSize());
    if (!entries) {
        return folders;
    }
    const int pages = std::max(1, (*entries + pageSize() - 1) / pageSize());
    if (m_options.page > pages) {
        m_session.fail(directory, "It has no page " + std::to_string(m_options.page) + ", only " + std::to_string(pages));
        return folders;
    }
    m_output.write("\n" + folderHeading(directory, m_coloured) + entryHeading(m_coloured));
    EntryTotals totals;
    const int first = m_options.page > 0 ? m_options.page - 1 : 0;
    const int end = m_options.page > 0 ? m_options.page : pages;
    for (int page = first; page < end && !m_session.stopped(); ++page) {
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
    const auto entries = m_session.readPage(directory, page);
    if (!entries) {
        return;
    }
    std::string lines;
    for (const Json::Value& entry : *entries) {
        lines += entryLine(entry, m_coloured);
        totals.add(entry);
        if (isFolder(entry)) {
            folders.push_back(entry["path"].asString());
        }
    }
    m_output.write(lines);
}

} // namespace

void runBrowse(Session& session, const BrowseOptions& options, Output& output)
{
    Browse(session, options, output).run();
}

} // namespace desktop
