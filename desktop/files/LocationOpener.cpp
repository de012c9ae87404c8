#include "desktop/files/LocationOpener.h"

#include "desktop/base/Log.h"
#include "desktop/text/NameEncoding.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace desktop {

namespace {

constexpr std::chrono::seconds kOpenTimeout(3);

struct OpenResult {
    OpenedFolder folder;
    int error = 0; ///< errno value
};

} // namespace

std::string OpenedFolder::directoryOf(const Location& below) const
{
    return directory + encodeName(below.relative.substr(location.relative.size()));
}

LocationOpener::LocationOpener(PathResolver resolver, std::shared_ptr<ReadReporter> reporter)
    : m_resolver(std::move(resolver))
    , m_reporter(std::move(reporter))
{
}

Location LocationOpener::locate(const std::string& path) const
{
    return m_resolver.locate(decodeName(path));
}

bool LocationOpener::hasVolume(const std::string& volume) const
{
    return m_resolver.locate(volume).volume == volume;
}

OpenedFolder LocationOpener::folderAt(const std::string& directory) const
{
    OpenedFolder folder;
    folder.location = locate(directory);
    folder.directory = withoutTrailingSlash(directory);
    return folder;
}

int LocationOpener::open(OpenedFolder& folder)
{
    struct stat status = {};
    folder.fd = PathResolver::open(folder.location, O_RDONLY | O_DIRECTORY | O_NONBLOCK);
    if (!folder.fd || fstat(folder.fd.get(), &status) != 0) {
        return errno;
    }
    folder.stamp = FolderStamp(status);
    return 0;
}

std::optional<OpenedFolder> LocationOpener::openFolder(const std::string& directory) const
{
    const auto location = folderAt(directory).location;
    auto opened = runWithin<OpenResult>(kOpenTimeout, directory, [location](const std::stop_token&) {
        OpenResult result;
        result.folder.location = location;
        result.error = open(result.folder);
        return result;
    });
    if (!opened) {
        return std::nullopt;
    }
    if (opened->error != 0) {
        report(directory, opened->error);
        return std::nullopt;
    }
    opened->folder.directory = withoutTrailingSlash(directory);
    return std::move(opened->folder);
}

void LocationOpener::report(const std::string& path, int error) const
{
    const std::string reason = describeError(error);
    logLine(LogLevel::Warning, "cannot read " + path + ": " + reason);
    m_reporter->failed(path, reason);
}

} // namespace desktop
