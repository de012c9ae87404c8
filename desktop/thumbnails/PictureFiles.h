#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/base/UniqueFd.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <string>

namespace desktop {

/// Copies all of file @p from into @p to, whose offset moves; false when that fails.
bool copyFile(int from, int to);

/// A picture that is being made where it is to stay.
struct NewPicture {
    std::string path;
    UniqueFd fd;
};

/// A folder of the plugin's that pictures are handed over in. Safe on any thread.
class PictureFolder {
public:
    explicit PictureFolder(std::string folder);

    /// A new, empty file for a picture, open for writing and reading. Its path is empty, errno set, when that fails.
    NewPicture begin();
    /// Keeps @p picture, which has been written.
    void keep(const NewPicture& picture);
    /// Removes @p picture, of which nothing has come.
    static void discard(const NewPicture& picture);
    /// Removes the oldest pictures beyond a few thousand. What a host still shows is among the others.
    void trim();

private:
    const std::string m_folder;
    Mutex m_mutex;
    std::uint64_t m_count GUARDED_BY(m_mutex) = 0;
    std::deque<std::string> m_files GUARDED_BY(m_mutex); ///< oldest first
};

/// Keeps pictures from one run of the program to the next, by the content that they were made of. Safe on any thread.
class PictureCache {
public:
    /// @p folder: kept in a folder below it, made when needed; empty: nothing is kept.
    explicit PictureCache(const std::string& folder);

    /// The picture kept under @p key, open for reading; none when there is none.
    UniqueFd find(const std::string& key) const;
    /// Keeps a copy of @p picture. A cache that cannot be written to costs time, nothing else.
    void keep(const std::string& key, int picture);

private:
    std::string fileOf(const std::string& key) const;
    void trim() const;

    std::string m_folder;
    std::atomic<unsigned int> m_kept{0};
};

} // namespace desktop
