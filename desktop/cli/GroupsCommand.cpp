#include "desktop/cli/GroupsCommand.h"

#include "desktop/cli/EntryTable.h"
#include "desktop/cli/JsonLines.h"
#include "desktop/cli/TextColumns.h"

#include "desktop/text/AsciiText.h"
#include "desktop/text/FoldedText.h"
#include "desktop/text/NameEncoding.h"
#include "desktop/text/NaturalOrder.h"

#include <algorithm>
#include <map>
#include <optional>

namespace desktop {

namespace {

constexpr int kAllFiles = 0;
constexpr int kOwnOrder = -1;
constexpr int kDescending = 0;
constexpr int kAscending = 1;

/// What the spellings of one group's key have in common.
std::string commonSpelling(const std::string& key)
{
    return foldedText(trimmed(key));
}

/// The spelling that @p keys have of the group that @p key means; nothing when it is none of them.
std::optional<std::string> listedSpelling(const std::vector<std::string>& keys, const std::string& key)
{
    const auto found = std::find_if(keys.begin(), keys.end(), [common = commonSpelling(key)](const std::string& listed) {
        return commonSpelling(listed) == common;
    });
    return found != keys.end() ? std::optional<std::string>(*found) : std::nullopt;
}

/// One run of the groups command.
class GroupsCommand {
public:
    GroupsCommand(Session& session, const GroupsOptions& options, Output& output)
        : m_session(session)
        , m_options(options)
        , m_output(output)
    {
    }

    void run();

private:
    void listGroups(const std::vector<std::string>& directories);
    void listFiles(const std::vector<std::string>& directories);
    std::optional<std::vector<std::string>> readKeys(const std::string& directory);
    void writeGroups(std::vector<std::string> keys, const std::map<std::string, std::uint64_t>& files);
    std::uint64_t writeFiles(const std::string& key);
    Json::Value filesOf(const char* command, const std::string& key, int direction);

    Session& m_session;
    const GroupsOptions& m_options;
    Output& m_output;
};

void GroupsCommand::run()
{
    if (!m_session.enter()) {
        return;
    }
    const std::vector<std::string> directories = m_session.foldersOf(m_options.path);
    if (m_options.key.empty()) {
        listGroups(directories);
    } else {
        listFiles(directories);
    }
}

// The plugin has the groups of one folder at a time, so a group's files are counted while it has them. Sticks may spell a
// group differently; the first one's spelling is shown.
void GroupsCommand::listGroups(const std::vector<std::string>& directories)
{
    std::vector<std::string> keys;
    std::map<std::string, std::uint64_t> files; // by the keys' common spellings
    bool listed = false;
    for (const std::string& directory : directories) {
        const auto found = m_session.stopped() ? std::nullopt : readKeys(directory);
        listed = listed || found;
        for (const std::string& key : found.value_or(std::vector<std::string>())) {
            if (m_session.stopped()) {
                return;
            }
            const auto [group, isNew] = files.try_emplace(commonSpelling(key));
            if (isNew) {
                keys.push_back(key);
            }
            group->second += filesOf("storagemedia.group.get.fileinfo", key, kOwnOrder).size();
        }
    }
    if (directories.size() > 1) {
        sortNaturally(keys, [](const std::string& key) { return key; });
    }
    if (listed && !m_session.stopped()) {
        writeGroups(std::move(keys), files);
    }
}

void GroupsCommand::listFiles(const std::vector<std::string>& directories)
{
    const std::string key = escapeBadBytes(m_options.key);
    std::uint64_t files = 0;
    bool listed = false;
    bool found = false;
    for (const std::string& directory : directories) {
        const auto keys = m_session.stopped() ? std::nullopt : readKeys(directory);
        listed = listed || keys;
        const auto spelling = keys ? listedSpelling(*keys, key) : std::nullopt;
        if (spelling) {
            found = true;
            files += writeFiles(*spelling);
        }
    }
    if (listed && !found) {
        m_session.fail(key, "There is no such group");
    } else if (found && !m_options.json) {
        m_output.write(counted(files, "file") + "\n");
    }
}

// Nothing when none can be read; some may be missing after an error.
std::optional<std::vector<std::string>> GroupsCommand::readKeys(const std::string& directory)
{
    Json::Value request;
    request["Group"] = m_options.by;
    request["dirpath"] = directory;
    std::vector<std::string> keys;
    const bool read =
        m_session.ask("storagemedia.group.musicorphoto", request, directory, [&keys](const Json::Value& body, bool) {
            for (const Json::Value& key : body["keylst"]) {
                keys.push_back(key["keystr"].asString());
            }
        });
    return read || !keys.empty() ? std::optional(std::move(keys)) : std::nullopt;
}

void GroupsCommand::writeGroups(std::vector<std::string> keys, const std::map<std::string, std::uint64_t>& files)
{
    if (m_options.descending) {
        std::reverse(keys.begin(), keys.end());
    }
    std::string lines;
    std::uint64_t total = 0;
    for (const std::string& key : keys) {
        const std::uint64_t count = files.at(commonSpelling(key));
        Json::Value group;
        group["key"] = key;
        group["files"] = static_cast<Json::UInt64>(count);
        total += count;
        lines += m_options.json ? jsonLine(group) : padLeft(group["files"].asString(), 7) + "  " + visibleText(key) + "\n";
    }
    if (!m_options.json) {
        lines += counted(keys.size(), "group") + ", " + counted(total, "file") + "\n";
    }
    m_output.write(lines);
}

// One command lists the files in either direction, the other one gives their duration and artist. Returns how many there
// are.
std::uint64_t GroupsCommand::writeFiles(const std::string& key)
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
    return files.size();
}

Json::Value GroupsCommand::filesOf(const char* command, const std::string& key, int direction)
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
    GroupsCommand(session, options, output).run();
}

} // namespace desktop
