#pragma once

#include "desktop/volumes/Volumes.h"

#include <string>
#include <vector>

namespace desktop {

/// Folders on which something may be mounted while the program runs. In its private directories the program sees only mounts
/// that the kernel propagates, which it does not below a mount that is private itself.
class LaterMounts {
public:
    /// Looks at the mounts that the folders of @p sources lie on; to be made before makeDirectoriesPrivate().
    explicit LaterMounts(const VolumeSources& sources);

    /// Those on which a later mount will not be seen: they are missing, or empty and nothing is mounted there yet. A folder
    /// that does not answer for a second is none of them.
    std::vector<std::string> unseen() const;

private:
    std::vector<std::string> m_withoutPropagation;
};

} // namespace desktop
