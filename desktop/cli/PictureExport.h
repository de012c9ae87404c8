#pragma once

#include <set>
#include <string>

namespace desktop {

/// Copies pictures into a folder of the user's. A copy is there whole or not at all. Used on one thread.
class PictureExport {
public:
    explicit PictureExport(std::string folder)
        : m_folder(std::move(folder))
    {
    }

    /// Makes the folder unless it is there. Returns 0, or why it cannot be used as an errno value.
    int prepare() const;
    /// Copies @p picture to a file named after media file @p mediaPath, both as bytes; the copy of an earlier run is
    /// replaced. Puts the copy's path, as bytes, into @p target. Returns 0, or why it failed as an errno value.
    int copy(const std::string& picture, const std::string& mediaPath, std::string& target);

private:
    std::string nameFor(const std::string& mediaPath);

    const std::string m_folder;
    std::set<std::string> m_names; ///< taken by this run
};

/// Whether no other copy will succeed either where one has failed with errno value @p error.
bool endsAllCopies(int error);

} // namespace desktop
