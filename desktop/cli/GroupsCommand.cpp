#include "desktop/cli/GroupsCommand.h"

#include "desktop/cli/EntryTable.h"
#include "desktop/cli/JsonLines.h"
#include "desktop/cli/TextColumns.h"

#include "desktop/text/NameEncoding.h"

#include <algorithm>
#include <map>

namespace desktop {

namespace {

constexpr int kAllFiles = 0;
constexpr int kOwnOrder = -1;
constexpr int kDescending = 0;
constexpr int kAscending = 1;

/// One run of the groups command.
class GroupsRun {
public:
    GroupsRun(Session& session, const GroupsOptions& options, Output& output)
        : m_session(session)
        , m_options(options)
        , m_output(output)
    {
    }

    void run();

private:
    bool readKeys(const std::string& directory);
    void showKeys();
    void showFiles(const std::string& key);
    Json::Value filesOf(const char* command, const std::string& key, int direction);

    Session& m_session;
    const GroupsOptions& m_options;
    Output& m_output;
    std::vector<std::string> m_keys;
};

void GroupsRun::run()
{
    if (!m_session.enter() || !readKeys(m_session.pathOf(m_options.path))) {
        return;
    }
    const std::string key = escapeBadBytes(m_options.key);
    if (key.empty()) {
        showKeys();
    } else if (std::find(m_keys.begin(), m_keys.end(), key) != m_keys.end()) {
        showFiles(key);
    } else {
        m_session.fail(key, "There is no such group");
    }
}

bool GroupsRun::readKeys(const std::string& directory)
{
    Json::Value request;
    request["Group"] = m_options.by;
    request["dirpath"] = directory;
    return m_session.ask("storagemedia.group.musicorphoto", request, directory, [this](const Json::Value& body, bool) {
        for (const Json::Value& key : body["keylst"]) {
            m_keys.push_back(key["keystr"].asString());
        }
    });
}

void GroupsRun::showKeys()
{
    if (m_options.descending) {
        std::reverse(m_keys.begin(), m_keys.end());
    }
    std::uint64_t files = 0;
    for (const std::string& key : m_keys) {
        if (m_session.stopped()) {
            return;
        }
        Json::Value group;
        group["key"] = key;
        group["files"] = filesOf("storagemedia.group.get.fileinfo", key, kOwnOrder).size();
        files += group["files"].asUInt64();
        m_output.write(m_options.json ? jsonLine(group)
                                      : padLeft(group["files"].asString(), 7) + "  " + visibleText(key) + "\n");
    }
    if (!m_options.json) {
        m_output.write(counted(m_keys.size(), "group") + ", " + counted(files, "file") + "\n");
    }
}

// One command lists the files in either direction, the other one gives their duration and artist.
void GroupsRun::showFiles(const std::string& key)
{
    std::map<std::string, Json::Value> media;
    for (const Json::Value& file : filesOf("storagemedia.kiro.group.get.fileinfo", key, kOwnOrder)) {
        media[file["path"].asString()] = file;
    }
    const Json::Value files =
        filesOf("storagemedia.group.get.fileinfo", key, m_options.descending ? kDescending : kAscending);
    for (const Json::Value& file : files) {
        const Json::Value& described = media[file["path"].asString()];
        if (m_options.json) {
            m_output.write(jsonLine(described));
            continue;
        }
        m_output.write(padLeft(humanDuration(described["duration"].asUInt()), 8) + "  " +
                       padRight(truncated(visibleText(described["artist"].asString()), 24), 24) + "  " +
                       visibleText(file["path"].asString()) + "\n");
    }
    if (!m_options.json) {
        m_output.write(counted(files.size(), "file") + "\n");
    }
}

Json::Value GroupsRun::filesOf(const char* command, const std::string& key, int direction)
{
    Json::Value request;
    request["keystr"] = key;
    request["number"] = kAllFiles;
    request["asc"] = direction;
    Json::Value reply;
    // A query that fails leaves the reply as it was.
    if (m_session.query(command, request, key, reply) && !reply.isMember("filelst")) {
        m_session.fail(key, "Its files cannot be listed");
    }
    return reply["filelst"];
}

} // namespace

void runGroups(Session& session, const GroupsOptions& options, Output& output)
{
    GroupsRun(session, options, output).run();
}

} // namespace desktop
