#pragma once

#include "desktop/files/PathResolver.h"
#include "desktop/thumbnails/PictureFiles.h"
#include "desktop/workers/MediaWorkers.h"

#include "platform/SocMwTypes.h"

#include <stop_token>

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

    /// Makes the picture of file @p path, a text as encodeName writes it: a JPEG file in @p folder, whose path it returns.
    /// Without one, @p error says why, or is empty when @p form wants none. Returns soon once @p cancelled has a stop
    /// requested.
    std::string make(const std::string& path, const ThumbnailForm& form, PictureFolder& folder,
                     const std::stop_token& cancelled, std::string& error);

private:
    std::string write(int file, FileType type, const ThumbnailForm& form, const std::string& key, int picture,
                      const std::stop_token& cancelled);

    const PathResolver m_resolver;
    const std::shared_ptr<MediaWorkers> m_workers;
    PictureCache m_cache;
};

} // namespace desktop
