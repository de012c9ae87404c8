#pragma once

#include <string>
#include <vector>

namespace desktop {

/// Folders on which something may be mounted while the program runs. In its private directories the program sees only mounts
/// that the kernel propagates, which it does not below a mount that is private itself.
class LaterMounts {
public:
    /// Looks at the mounts; to be made before makeDirectoriesPrivate(). @p folders: absolute paths as bytes.
    explicit LaterMounts(std::vector<std::string> folders);

    /// Those on which a later mount will not be seen: they are missing, or empty and nothing is mounted there yet. A folder
    /// that does not answer for a second is none of them.
    std::vector<std::string> unseen() const;

private:
    std::vector<std::string> m_withoutPropagation;
};

} // namespace desktop
