#include "desktop/cli/BrowseCommand.h"

#include "desktop/cli/EntryTable.h"
#include "desktop/cli/JsonLines.h"
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
class BrowseCommand {
public:
    BrowseCommand(Session& session, const BrowseOptions& options, Output& output)
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
    void showOnePage(const std::string& directory, std::vector<std::string>& folders);
    void writeEntries(const Json::Value& entries, EntryTotals& totals, std::vector<std::string>& folders);
    std::string folderStart(const std::string& directory) const;
    void writeText(const std::string& text);
    int pageSize() const { return m_options.pageSize > 0 ? m_options.pageSize : kEntriesPerRequest; }

    Session& m_session;
    const BrowseOptions& m_options;
    Output& m_output;
    const bool m_coloured;
};

void BrowseCommand::run()
{
    if (!m_session.enter()) {
        return;
    }
    if (!m_options.json) {
        showDevices();
    }
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

void BrowseCommand::showDevices()
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
std::vector<std::string> BrowseCommand::showFolder(const std::string& directory)
{
    std::vector<std::string> folders;
    if (m_options.page > 0) {
        showOnePage(directory, folders);
        return folders;
    }
    const auto entries = m_session.changeDirectory(directory, pageSize());
    if (!entries) {
        return folders;
    }
    const int pages = std::max(1, (*entries + pageSize() - 1) / pageSize());
    writeText(folderStart(directory));
    EntryTotals totals;
    for (int page = 0; page < pages && !m_session.stopped(); ++page) {
        if (m_options.pageSize > 0) {
            writeText("page " + std::to_string(page + 1) + " of " + std::to_string(pages) + "\n");
        }
        writeEntries(m_session.readPage(directory, page).value_or(Json::Value()), totals, folders);
    }
    writeText(totals.text() + "\n");
    return folders;
}

// Of a folder of any length; how many pages it has is not known then.
void BrowseCommand::showOnePage(const std::string& directory, std::vector<std::string>& folders)
{
    if (!m_session.setPageSize(directory, pageSize())) {
        return;
    }
    const auto entries = m_session.readPageOf(directory, m_options.page - 1);
    if (!entries) {
        return;
    }
    if (entries->empty() && m_options.page > 1) {
        m_session.fail(directory, "It has no page " + std::to_string(m_options.page));
        return;
    }
    EntryTotals totals;
    writeText(folderStart(directory) + "page " + std::to_string(m_options.page) + "\n");
    writeEntries(*entries, totals, folders);
    writeText(totals.text() + "\n");
}

void BrowseCommand::writeEntries(const Json::Value& entries, EntryTotals& totals, std::vector<std::string>& folders)
{
    std::string lines;
    for (const Json::Value& entry : entries) {
        lines += m_options.json ? jsonLine(entry) : entryLine(entry, m_coloured);
        totals.add(entry);
        if (isFolder(entry)) {
            folders.push_back(entry["path"].asString());
        }
    }
    m_output.write(lines);
}

std::string BrowseCommand::folderStart(const std::string& directory) const
{
    return "\n" + folderHeading(directory, m_coloured) + entryHeading(m_coloured);
}

void BrowseCommand::writeText(const std::string& text)
{
    if (!m_options.json) {
        m_output.write(text);
    }
}

} // namespace

void runBrowse(Session& session, const BrowseOptions& options, Output& output)
{
    BrowseCommand(session, options, output).run();
}

} // namespace desktop
