#include "desktop/cli/InfoCommand.h"

#include "desktop/cli/EntryTable.h"
#include "desktop/cli/JsonLines.h"
#include "desktop/cli/TextColumns.h"

namespace desktop {

namespace {

std::string line(const std::string& name, const std::string& value)
{
    return "  " + padRight(name, 8) + "  " + (value.empty() ? "-" : visibleText(value)) + "\n";
}

// What there is depends on the type.
std::string description(const std::string& path, const Json::Value& info, bool coloured)
{
    std::string text = folderHeading(path, coloured) + line("type", typeName(info["type"].asInt()));
    if (info.isMember("duration")) {
        text += line("duration", humanDuration(info["duration"].asUInt()));
    }
    for (const char* tag : {"artist", "album", "genre"}) {
        if (info.isMember(tag)) {
            text += line(tag, info[tag].asString());
        }
    }
    if (info.isMember("width")) {
        const bool known = info["width"].asUInt() > 0;
        text += line("size", known ? info["width"].asString() + " x " + info["height"].asString() : "");
    }
    return text;
}

} // namespace

void runInfo(Session& session, const InfoOptions& options, Output& output)
{
    if (!session.enter()) {
        return;
    }
    for (const std::string& file : options.files) {
        if (session.stopped()) {
            return;
        }
        const std::string path = session.pathOf(file);
        Json::Value request;
        request["dirpath"] = path;
        Json::Value info;
        if (!session.query("storagemedia.media.getinfo", request, path, info)) {
            continue;
        }
        if (options.json) {
            info["path"] = path;
            output.write(jsonLine(info));
        } else {
            output.write(description(path, info, output.isColoured()));
        }
    }
}

} // namespace desktop
