#include "desktop/cli/ThumbnailsCommand.h"

#include "desktop/cli/EntryTable.h"
#include "desktop/cli/ErrorMessage.h"
#include "desktop/cli/JsonLines.h"
#include "desktop/cli/PictureExport.h"
#include "desktop/cli/TextColumns.h"

#include "desktop/text/NameEncoding.h"

#include "platform/SocMwTypes.h"

#include <map>

namespace desktop {

namespace {

constexpr int kPageSize = 100; // pictures to a request
constexpr const char* kStart = "storagemedia.start.thumbnail";

bool hasPicture(const Json::Value& entry)
{
    switch (entry["type"].asInt()) {
    case FILE_TYPE_PHOTO:
    case FILE_TYPE_VIDEO:
    case FILE_TYPE_MUSIC:
    case FILE_TYPE_PANORAMA:
        return true;
    default:
        return false;
    }
}

/// One run of the thumbnails command.
class ThumbnailsCommand {
public:
    ThumbnailsCommand(Session& session, const ThumbnailsOptions& options, Output& output)
        : m_session(session)
        , m_options(options)
        , m_output(output)
        , m_export(options.outFolder)
    {
    }

    void run();

private:
    /// Picture files by index within a request.
    using Pictures = std::map<Json::ArrayIndex, std::string>;

    bool makeOfFolders(const std::vector<std::string>& directories);
    bool makeOfFolder(const std::string& directory);
    bool makeOfFile(const std::string& path);
    bool makePage(const std::string& directory, int page, std::size_t firstIndex, std::size_t total);
    Json::Value request() const;
    Session::AnswerHandler collectInto(Pictures& pictures, std::size_t firstIndex, std::size_t total);
    bool writePicture(const std::string& path, const std::string& picture);
    bool copyOut(const std::string& path, const std::string& picture);
    bool writeMade(const std::string& path, const std::string& picture);

    Session& m_session;
    const ThumbnailsOptions& m_options;
    Output& m_output;
    PictureExport m_export;
    std::uint64_t m_made = 0;
    std::uint64_t m_without = 0;
    bool m_copiesEnded = false;
};

void ThumbnailsCommand::run()
{
    if (!m_session.enter()) {
        return;
    }
    const int unusable = m_options.outFolder.empty() ? 0 : m_export.prepare();
    if (unusable != 0) {
        m_session.fail(m_options.outFolder, systemErrorText(unusable));
        return;
    }
    const bool made = m_options.file.empty() ? makeOfFolders(m_session.foldersOf(m_options.path))
                                             : makeOfFile(m_session.pathOf(m_options.file));
    if (made && !m_options.json) {
        m_output.write(counted(m_made, "picture") + ", " + counted(m_without, "media file") + " without\n");
    }
}

// Whether any has been gone through to its end.
bool ThumbnailsCommand::makeOfFolders(const std::vector<std::string>& directories)
{
    bool made = false;
    for (const std::string& directory : directories) {
        made = (!m_session.stopped() && !m_copiesEnded && makeOfFolder(directory)) || made;
    }
    return made;
}

bool ThumbnailsCommand::makeOfFolder(const std::string& directory)
{
    const auto entries = m_session.changeDirectory(directory, kPageSize);
    const auto total = static_cast<std::size_t>(entries.value_or(0));
    for (std::size_t firstIndex = 0; firstIndex < total; firstIndex += kPageSize) {
        if (m_session.stopped() || !makePage(directory, static_cast<int>(firstIndex / kPageSize), firstIndex, total)) {
            return false;
        }
    }
    return entries.has_value();
}

bool ThumbnailsCommand::makeOfFile(const std::string& path)
{
    Pictures pictures;
    Json::Value single = request();
    single["path"] = path;
    if (!m_session.ask(kStart, single, path, collectInto(pictures, 0, 1))) {
        return false;
    }
    if (pictures[0].empty()) {
        return m_session.fail(path, "It is no photo, video or music");
    }
    return writePicture(path, pictures[0]);
}

bool ThumbnailsCommand::makePage(const std::string& directory, int page, std::size_t firstIndex, std::size_t total)
{
    const auto entries = m_session.readPage(directory, page);
    if (!entries) {
        return false;
    }
    Pictures pictures;
    Json::Value range = request();
    range["startidx"] = static_cast<Json::UInt>(firstIndex);
    range["count"] = entries->size();
    if (!m_session.ask(kStart, range, directory, collectInto(pictures, firstIndex, total))) {
        return false;
    }
    for (Json::ArrayIndex i = 0; i < entries->size(); ++i) {
        const Json::Value& entry = (*entries)[i];
        if (hasPicture(entry) && !writePicture(entry["path"].asString(), pictures[i])) {
            return false;
        }
    }
    return true;
}

Json::Value ThumbnailsCommand::request() const
{
    Json::Value request;
    request["type"] = FILE_TYPE_UNKNOWN; // of every kind
    request["width"] = m_options.width;
    request["height"] = m_options.height;
    return request;
}

Session::AnswerHandler ThumbnailsCommand::collectInto(Pictures& pictures, std::size_t firstIndex, std::size_t total)
{
    return [this, &pictures, firstIndex, total](const Json::Value& body, bool) {
        const Json::ArrayIndex index = body["index"].asUInt();
        pictures[index] = body["filepath"].asString();
        m_session.progress().show(progressBar(firstIndex + index + 1, total));
    };
}

// @p picture is empty when there is none. False when no other can be written either.
bool ThumbnailsCommand::writePicture(const std::string& path, const std::string& picture)
{
    if (!picture.empty()) {
        return copyOut(path, picture);
    }
    if (m_session.failIfPulled(path)) {
        return false;
    }
    ++m_without;
    const std::string reason = m_session.readFailure(path);
    Json::Value line;
    line["path"] = path;
    if (!reason.empty()) {
        line["error"] = reason;
    }
    const std::string text = "no picture of " + path + (reason.empty() ? "" : ": " + reason);
    return m_output.write(m_options.json ? jsonLine(line) : visibleText(text) + "\n");
}

bool ThumbnailsCommand::copyOut(const std::string& path, const std::string& picture)
{
    if (m_options.outFolder.empty()) {
        return writeMade(path, picture);
    }
    std::string target;
    const int error = m_export.copy(picture, decodeName(path), target);
    if (error != 0) {
        m_copiesEnded = endsAllCopies(error);
        m_session.fail(encodeName(target), systemErrorText(error));
        return !m_copiesEnded;
    }
    return writeMade(path, encodeName(target));
}

bool ThumbnailsCommand::writeMade(const std::string& path, const std::string& picture)
{
    ++m_made;
    Json::Value line;
    line["path"] = path;
    line["picture"] = picture;
    return !m_options.json || m_output.write(jsonLine(line));
}

} // namespace

void runThumbnails(Session& session, const ThumbnailsOptions& options, Output& output)
{
    ThumbnailsCommand(session, options, output).run();
}

} // namespace desktop
