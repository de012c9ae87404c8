#include "desktop/cli/SearchCommand.h"

#include "desktop/cli/EntryTable.h"
#include "desktop/cli/JsonLines.h"

#include "desktop/files/UnreadableFiles.h"

namespace desktop {

namespace {

constexpr int kPieceSize = 200; // files to a piece of the answer

// Why the videos found may not be all; empty when they are.
std::string gapsOf(const Json::Value& totals)
{
    const std::string error = totals["error"].asString();
    return error.empty() ? describeUnreadable(totals["unreadable"].asUInt(), totals["unreadableFiles"].asUInt()) : error;
}

/// One run of the search command.
class SearchCommand {
public:
    SearchCommand(Session& session, const SearchOptions& options, Output& output)
        : m_session(session)
        , m_options(options)
        , m_output(output)
        , m_coloured(output.isColoured())
    {
    }

    void run();

private:
    bool search(const std::string& directory);
    void writeFiles(const Json::Value& files);
    std::string summary() const;

    Session& m_session;
    const SearchOptions& m_options;
    Output& m_output;
    const bool m_coloured;
    bool m_headed = false;
    std::uint64_t m_videos = 0;
    std::uint64_t m_folders = 0;
};

void SearchCommand::run()
{
    if (!m_session.enter()) {
        return;
    }
    bool ended = false;
    for (const std::string& directory : m_session.foldersOf(m_options.path)) {
        ended = (!m_session.stopped() && search(directory)) || ended;
    }
    if (ended && !m_options.json && !m_session.stopped()) {
        m_output.write(summary());
    }
}

// Whether it has come to its end.
bool SearchCommand::search(const std::string& directory)
{
    Json::Value request;
    request["dirpath"] = directory;
    request["number"] = kPieceSize;
    Json::Value totals;
    const bool ended =
        m_session.ask("storagemedia.video.searchFiles", request, directory, [&](const Json::Value& body, bool last) {
            if (last) {
                totals = body;
            } else {
                writeFiles(body["filelst"]);
            }
        });
    if (!ended) {
        return false;
    }
    m_videos += totals["total"].asUInt64();
    m_folders += totals["folders"].asUInt64();
    if (m_options.json) {
        totals.removeMember("reqId");
        m_output.write(jsonLine(totals));
    }
    if (const std::string gaps = gapsOf(totals); !gaps.empty()) {
        m_session.fail(directory, gaps);
    }
    return true;
}

void SearchCommand::writeFiles(const Json::Value& files)
{
    std::string lines = std::exchange(m_headed, true) || m_options.json ? "" : entryHeading(m_coloured);
    for (const Json::Value& file : files) {
        lines += m_options.json ? jsonLine(file) : entryLine(file, m_coloured, "path");
    }
    m_session.progress().clear();
    m_output.write(lines);
}

std::string SearchCommand::summary() const
{
    return counted(m_videos, "video") + " in " + counted(m_folders, "folder") + "\n";
}

} // namespace

void runSearch(Session& session, const SearchOptions& options, Output& output)
{
    SearchCommand(session, options, output).run();
}

} // namespace desktop
