#include "desktop/cli/SearchCommand.h"

#include "desktop/cli/EntryTable.h"
#include "desktop/cli/JsonLines.h"

#include "desktop/files/UnreadableFiles.h"

namespace desktop {

namespace {

constexpr int kPieceSize = 200; // files to a piece of the answer

std::string summary(const Json::Value& totals)
{
    return counted(totals["total"].asUInt64(), "video") + " in " + counted(totals["folders"].asUInt64(), "folder") + "\n";
}

// Why the videos found may not be all; empty when they are.
std::string gapsOf(const Json::Value& totals)
{
    const std::string error = totals["error"].asString();
    return error.empty() ? describeUnreadable(totals["unreadable"].asUInt(), totals["unreadableFiles"].asUInt()) : error;
}

} // namespace

void runSearch(Session& session, const SearchOptions& options, Output& output)
{
    if (!session.enter()) {
        return;
    }
    const bool coloured = output.isColoured();
    const std::string directory = session.pathOf(options.path);
    Json::Value request;
    request["dirpath"] = directory;
    request["number"] = kPieceSize;
    Json::Value totals;
    bool headed = options.json;
    const bool ended =
        session.ask("storagemedia.video.searchFiles", request, directory, [&](const Json::Value& body, bool last) {
            if (last) {
                totals = body;
                return;
            }
            std::string lines = std::exchange(headed, true) ? "" : entryHeading(coloured);
            for (const Json::Value& file : body["filelst"]) {
                lines += options.json ? jsonLine(file) : entryLine(file, coloured, "path");
            }
            session.progress().clear();
            output.write(lines);
        });
    if (!ended) {
        return;
    }
    totals.removeMember("reqId");
    output.write(options.json ? jsonLine(totals) : summary(totals));
    if (const std::string gaps = gapsOf(totals); !gaps.empty()) {
        session.fail(directory, gaps);
    }
}

} // namespace desktop
