#include "desktop/worker/PhotoDescription.h"

#include "desktop/worker/HeifPhoto.h"
#include "desktop/worker/MediaError.h"
#include "desktop/worker/PhotoMetadata.h"
#include "desktop/worker/StreamMetadata.h"

namespace desktop {

// Where the photo library does not know the size, the decoder's own look at the file does.
MediaMetadata describePhoto(int fd)
{
    const MappedFile file(fd);
    if (isHeif(file)) {
        return readHeifMetadata(file);
    }
    MediaMetadata metadata;
    try {
        metadata = readPhotoMetadata(file);
    } catch (const MediaError&) {
        return readStreamMetadata(fd);
    }
    if (metadata.width == 0 || metadata.height == 0) {
        const MediaMetadata picture = readStreamMetadata(fd);
        metadata.width = picture.width;
        metadata.height = picture.height;
    }
    return metadata;
}

} // namespace desktop
