#include "desktop/cli/SearchCommand.h"

#include "desktop/cli/EntryTable.h"
#include "desktop/cli/JsonLines.h"

namespace desktop {

namespace {

constexpr int kPieceSize = 200; // files to a piece of the answer

std::string summary(const Json::Value& totals)
{
    std::string text =
        counted(totals["total"].asUInt64(), "video") + " in " + counted(totals["folders"].asUInt64(), "folder");
    const std::uint64_t unreadable = totals["unreadable"].asUInt64();
    return text + (unreadable > 0 ? ", " + counted(unreadable, "folder") + " that cannot be read" : "") + "\n";
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
    if (totals.isMember("error")) {
        session.fail(directory, totals["error"].asString());
    }
}

} // namespace desktop
