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

/// What has become of one picture.
struct ThumbnailResult {
    std::string picture;       ///< its file's path; empty: there is none
    std::string error;         ///< why there is none; empty when none was wanted
    std::string stalledVolume; ///< the volume that did not answer, a path as bytes; empty when it did
};

/// Makes the pictures of single files. Safe on any thread.
class ThumbnailMaker {
public:
    /// @p cacheFolder: keeps pictures for the next time; empty: none.
    ThumbnailMaker(PathResolver resolver, std::shared_ptr<MediaWorkers> workers, const std::string& cacheFolder);

    /// Makes the picture of file @p path, a text as encodeName writes it: a JPEG file in @p folder. Its volume has 3 seconds
    /// to open the file. Returns soon once @p cancelled has a stop requested.
    ThumbnailResult make(const std::string& path, const ThumbnailForm& form, PictureFolder& folder,
                         const std::stop_token& cancelled);

    /// The volume that @p path lies on, a path as bytes; empty when on none.
    std::string volumeOf(const std::string& path) const;

private:
    struct SourceFile;

    static SourceFile openSource(const Location& location, const ThumbnailForm& form);
    std::string write(const SourceFile& file, const ThumbnailForm& form, int picture, const std::stop_token& cancelled);

    const PathResolver m_resolver;
    const std::shared_ptr<MediaWorkers> m_workers;
    PictureCache m_cache;
};

} // namespace desktop
