#include "desktop/cli/PhotosCommand.h"

#include "desktop/cli/EntryTable.h"
#include "desktop/cli/JsonLines.h"
#include "desktop/cli/TextColumns.h"

#include "desktop/files/PathResolver.h"
#include "desktop/text/HumanSize.h"

#include <cerrno>

namespace desktop {

namespace {

constexpr int kPageSize = 1000;
constexpr int kTries = 8; // what the platform has read of many photos need not be read again

std::string row(const std::string& taken, const std::string& pixels, const std::string& size, const std::string& name)
{
    return padRight(taken, 19) + "  " + padLeft(pixels, 13) + "  " + padLeft(size, 9) + "  " + name + "\n";
}

// Adds what is known of photo @p photo to it.
void addDescription(Session& session, Json::Value& photo)
{
    const std::string path = photo["path"].asString();
    const auto info = session.describe(path);
    for (const char* key : {"taken", "width", "height"}) {
        if (info && info->isMember(key)) {
            photo[key] = (*info)[key];
        }
    }
    const std::string failure = session.readFailure(path);
    if (!failure.empty()) {
        photo["error"] = failure;
    }
}

std::string photoText(const Json::Value& photo)
{
    const bool measured = photo["width"].asUInt() > 0;
    const std::string pixels = measured ? photo["width"].asString() + " x " + photo["height"].asString() : "-";
    const std::string reason = photo.isMember("error") ? "  (" + photo["error"].asString() + ")" : "";
    return row(photo.get("taken", "-").asString(), pixels, humanSize(photo["size"].asUInt64()),
               visibleText(photo["name"].asString() + reason));
}

/// One run of the photos command.
class PhotosCommand {
public:
    PhotosCommand(Session& session, const PhotosOptions& options, Output& output)
        : m_session(session)
        , m_options(options)
        , m_output(output)
    {
    }

    void run();

private:
    void listFolder(const std::string& directory, bool headed);
    std::optional<Json::Value> sorted(const std::string& directory);

    Session& m_session;
    const PhotosOptions& m_options;
    Output& m_output;
};

void PhotosCommand::run()
{
    if (!m_session.enter()) {
        return;
    }
    const std::vector<std::string> directories = m_session.foldersOf(m_options.path);
    for (const std::string& directory : directories) {
        if (!m_session.stopped()) {
            listFolder(directory, directories.size() > 1);
        }
    }
}

void PhotosCommand::listFolder(const std::string& directory, bool headed)
{
    auto photos = m_session.changeDirectory(directory, kPageSize) ? sorted(directory) : std::nullopt;
    if (!photos) {
        return;
    }
    if (!m_options.json) {
        m_output.write((headed ? folderHeading(directory, m_output.isColoured()) : "") +
                       row("TAKEN", "PIXELS", "SIZE", "NAME"));
    }
    for (Json::Value& photo : *photos) {
        if (m_session.stopped() || m_session.isOnPulledStick(directory)) {
            return;
        }
        addDescription(m_session, photo);
        m_output.write(m_options.json ? jsonLine(photo) : photoText(photo));
    }
    if (!m_options.json) {
        m_output.write(counted(photos->size(), "photo") + "\n");
    }
}

std::optional<Json::Value> PhotosCommand::sorted(const std::string& directory)
{
    Json::Value request;
    request["type"] = static_cast<int>(m_options.sort);
    request["order"] = m_options.descending ? 0 : 1;
    Json::Value reply;
    for (int tries = 1; !m_session.execute("storagemedia.photo.sort", request, reply); ++tries) {
        const std::string reason = m_session.readFailure(directory);
        if (tries == kTries || m_session.stopped() || reason != describeError(ETIMEDOUT)) {
            m_session.fail(directory, reason.empty() ? "Its photos cannot be sorted" : reason);
            return std::nullopt;
        }
        m_session.progress().show("Reading the photos of " + visibleText(directory));
    }
    m_session.progress().clear();
    return std::move(reply["filelst"]);
}

} // namespace

void runPhotos(Session& session, const PhotosOptions& options, Output& output)
{
    PhotosCommand(session, options, output).run();
}

} // namespace desktop
