#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/base/UniqueFd.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace desktop {

/// Memory for a picture, which another process draws and this one reads.
class PictureMemory {
public:
    /// @p size in bytes. Throws std::system_error.
    explicit PictureMemory(std::size_t size);
    ~PictureMemory();
    PictureMemory(const PictureMemory&) = delete;
    PictureMemory& operator=(const PictureMemory&) = delete;

    /// A file in memory, whose size nobody can change.
    int fd() const { return m_fd.get(); }
    const std::uint8_t* pixels() const { return m_pixels; }
    std::size_t size() const { return m_size; }

private:
    UniqueFd m_fd;
    std::size_t m_size;
    const std::uint8_t* m_pixels;
};

/// Memories for pictures that follow one another. The kernel takes about as long to make one as it takes to draw a picture,
/// so that those which have been read are used again. Safe on any thread.
class PictureMemories {
public:
    /// One of @p size bytes. Throws std::system_error.
    std::shared_ptr<PictureMemory> take(std::size_t size);
    /// The picture in @p memory, which is used again once nobody has the picture any more.
    std::shared_ptr<const std::uint8_t> picture(std::shared_ptr<PictureMemory> memory) const;
    /// Gives up what is not in use.
    void clear();

private:
    /// Pictures may outlive the object.
    struct Spares {
        Mutex mutex;
        std::vector<std::shared_ptr<PictureMemory>> memories GUARDED_BY(mutex);

        void add(std::shared_ptr<PictureMemory> memory);
    };

    std::shared_ptr<Spares> m_spares = std::make_shared<Spares>();
};

} // namespace desktop
