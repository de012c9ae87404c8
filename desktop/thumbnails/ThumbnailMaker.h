#pragma once

#include "desktop/files/PathResolver.h"
#include "desktop/thumbnails/PictureFiles.h"
#include "desktop/workers/MediaWorkers.h"

#include "platform/SocMwTypes.h"

namespace desktop {

/// What the pictures of one request are like.
struct ThumbnailForm {
    int width = 0;                     ///< pixels, at most
    int height = 0;                    ///< pixels, at most
    FileType type = FILE_TYPE_UNKNOWN; ///< a playable kind: files of other kinds get none; anything else: all kinds

    bool wants(FileType file) const;
};

/// Makes the pictures of single files. Safe on any thread.
class ThumbnailMaker {
public:
    /// @p cacheFolder: keeps pictures for the next time; empty: none.
    ThumbnailMaker(PathResolver resolver, std::shared_ptr<MediaWorkers> workers, const std::string& cacheFolder);

    /// The picture of file @p path, a text as encodeName writes it: a JPEG file, open for reading. Without one, @p error
    /// says why, or is empty when @p form wants none. Returns soon once @p abandon is raised.
    UniqueFd make(const std::string& path, const ThumbnailForm& form, const Wakeup& abandon, std::string& error);

private:
    const PathResolver m_resolver;
    const std::shared_ptr<MediaWorkers> m_workers;
    PictureCache m_cache;
};

} // namespace desktop
