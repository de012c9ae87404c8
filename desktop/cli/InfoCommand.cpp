#include "desktop/cli/InfoCommand.h"

#include "desktop/cli/EntryTable.h"
#include "desktop/cli/JsonLines.h"
#include "desktop/cli/TextColumns.h"

namespace desktop {

namespace {

std::string line(const std::string& name, const std::string& value)
{
    return "  " + padRight(name, 8) + "  " + visibleText(value) + "\n";
}

// What there is depends on the type; @p failure says why something is missing, where that is known.
std::string description(const std::string& path, const Json::Value& info, const std::string& failure, bool coloured)
{
    const std::string missing = failure.empty() ? "-" : "-  " + failure;
    std::string text = folderHeading(path, coloured) + line("type", typeName(info["type"].asInt()));
    if (info.isMember("duration")) {
        const unsigned int duration = info["duration"].asUInt();
        text += line("duration", duration > 0 ? humanDuration(duration) : missing);
    }
    for (const char* tag : {"title", "artist", "album", "genre", "year", "taken"}) {
        if (info.isMember(tag)) {
            const std::string value = info[tag].asString();
            text += line(tag, value.empty() ? missing : value);
        }
    }
    if (info.isMember("width")) {
        const bool known = info["width"].asUInt() > 0;
        text += line("size", known ? info["width"].asString() + " x " + info["height"].asString() : missing);
    }
    return text;
}

// Writes what the plugin knows of file @p path.
void describeFile(Session& session, const std::string& path, bool json, Output& output)
{
    auto info = session.describe(path);
    if (!info) {
        return;
    }
    const std::string failure = session.readFailure(path);
    if (!json) {
        output.write(description(path, *info, failure, output.isColoured()));
        return;
    }
    (*info)["path"] = path;
    if (!failure.empty()) {
        (*info)["error"] = failure;
    }
    output.write(jsonLine(*info));
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
        if (!session.isOnPulledStick(path)) {
            describeFile(session, path, options.json, output);
        }
    }
}

} // namespace desktop
