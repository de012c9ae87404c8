#include "desktop/cli/PlaylistsCommand.h"

#include "desktop/cli/EntryTable.h"
#include "desktop/cli/JsonLines.h"
#include "desktop/cli/TextColumns.h"

#include "platform/SocMwTypes.h"

namespace desktop {

namespace {

constexpr int kPageSize = 1000; // entries to a request

/// One run of the playlists command.
class PlaylistsCommand {
public:
    PlaylistsCommand(Session& session, const PlaylistsOptions& options, Output& output)
        : m_session(session)
        , m_options(options)
        , m_output(output)
    {
    }

    void run();

private:
    bool isPlaylist(const std::string& path);
    void listPlaylists(const std::vector<std::string>& directories);
    void listEntries(const std::string& playlist);
    std::string entryText(const Json::Value& entry) const;

    Session& m_session;
    const PlaylistsOptions& m_options;
    Output& m_output;
};

void PlaylistsCommand::run()
{
    if (!m_session.enter()) {
        return;
    }
    const std::vector<std::string> paths = m_session.foldersOf(m_options.path);
    if (!m_options.path.empty() && isPlaylist(paths.front())) {
        listEntries(paths.front());
    } else {
        listPlaylists(paths);
    }
}

// What cannot be described is taken for a folder, whose listing tells what is wrong with it.
bool PlaylistsCommand::isPlaylist(const std::string& path)
{
    Json::Value request;
    request["dirpath"] = path;
    Json::Value described;
    return m_session.execute("storagemedia.media.getinfo", request, described) &&
           described["type"].asInt() == FILE_TYPE_PLAYLIST;
}

void PlaylistsCommand::listPlaylists(const std::vector<std::string>& directories)
{
    std::uint64_t count = 0;
    bool listed = false;
    for (const std::string& directory : directories) {
        Json::Value request;
        request["dirpath"] = directory;
        Json::Value reply;
        if (m_session.stopped() || !m_session.query("storagemedia.get.playlistfile", request, directory, reply)) {
            continue;
        }
        listed = true;
        count += reply["list"].size();
        std::string lines;
        for (const Json::Value& playlist : reply["list"]) {
            lines += m_options.json ? jsonLine(playlist) : visibleText(playlist["path"].asString()) + "\n";
        }
        m_output.write(lines);
    }
    if (listed && !m_options.json) {
        m_output.write(counted(count, "playlist") + "\n");
    }
}

void PlaylistsCommand::listEntries(const std::string& playlist)
{
    const std::string directory = playlist.substr(0, playlist.rfind('/'));
    if (!m_session.setPageSize(directory.empty() ? "/" : directory, kPageSize)) {
        return;
    }
    std::uint64_t count = 0;
    Json::ArrayIndex onPage = kPageSize;
    for (int page = 0; onPage == kPageSize && !m_session.stopped(); ++page) {
        const auto entries = m_session.readPageOf(playlist, page);
        if (!entries) {
            return;
        }
        onPage = entries->size();
        count += onPage;
        std::string lines = page == 0 && !m_options.json ? entryHeading(m_output.isColoured()) : "";
        for (const Json::Value& entry : *entries) {
            lines += entryText(entry);
        }
        m_output.write(lines);
    }
    if (!m_options.json) {
        m_output.write(counted(count, "file") + "\n");
    }
}

std::string PlaylistsCommand::entryText(const Json::Value& entry) const
{
    return m_options.json ? jsonLine(entry) : entryLine(entry, m_output.isColoured(), "path");
}

} // namespace

void runPlaylists(Session& session, const PlaylistsOptions& options, Output& output)
{
    PlaylistsCommand(session, options, output).run();
}

} // namespace desktop
