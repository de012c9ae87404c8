#pragma once

#include "desktop/files/FolderStamp.h"
#include "desktop/files/PathResolver.h"
#include "desktop/files/ReadObserver.h"
#include "desktop/jobs/BackgroundJob.h"

#include <cerrno>
#include <stop_token>

namespace desktop {

/// A folder on a volume, to be read. Paths are texts, as encodeName writes them, unless they are said to be bytes.
struct OpenedFolder {
    Location location;
    std::string directory; ///< its path, without a trailing "/" ("" for the root); what the paths of its entries begin with
    UniqueFd fd;
    FolderStamp stamp; ///< taken when it was opened

    /// The path, as directory is one, of the folder at @p below, which is this one or lies beneath it.
    std::string directoryOf(const Location& below) const;
};

/// Opens what lies on the volumes, gives a file system that does not answer a time limit, and reports what cannot be read.
/// Copies share the volumes and the observer. Safe on any thread.
class LocationOpener {
public:
    LocationOpener(PathResolver resolver, std::shared_ptr<ReadReporter> reporter);

    /// Where @p path, a text, lies; an empty location when on no volume. Looks at no file.
    Location locate(const std::string& path) const;
    /// Whether the volume whose folder is @p volume, as bytes, is still there.
    bool hasVolume(const std::string& volume) const;

    /// Describes @p directory as a folder that is still to be opened.
    OpenedFolder folderAt(const std::string& directory) const;
    /// Opens @p folder, which has its location, however long that takes. Returns 0, or why it failed as an errno value.
    static int open(OpenedFolder& folder);
    /// Opens @p directory; nothing, which is reported, when there is no such folder on a volume or the volume does not
    /// answer for 3 seconds.
    std::optional<OpenedFolder> openFolder(const std::string& directory) const;

    /// What @p work, which reads @p path, gives; nothing, which is reported, when it takes longer than @p timeout.
    template <typename Result>
    std::optional<Result> runWithin(std::chrono::milliseconds timeout, const std::string& path,
                                    std::function<Result(const std::stop_token& cancelled)> work) const
    {
        auto result = desktop::runWithin<Result>(timeout, std::move(work));
        if (!result) {
            report(path, ETIMEDOUT);
        }
        return result;
    }

    /// Logs and reports that @p path cannot be read because of errno value @p error.
    void report(const std::string& path, int error) const;
    ReadReporter& reporter() const { return *m_reporter; }

private:
    PathResolver m_resolver;
    std::shared_ptr<ReadReporter> m_reporter;
};

} // namespace desktop
