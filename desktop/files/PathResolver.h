#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/base/UniqueFd.h"

#include <memory>
#include <string>
#include <vector>

namespace desktop {

/// What stands behind the last "/" of @p path; all of it when there is none.
inline std::string lastName(const std::string& path)
{
    return path.substr(path.rfind('/') + 1); // npos + 1 is 0
}

/// A place on a volume: the volume's folder and a path beneath it ("." for the volume itself), as bytes.
struct Location {
    std::string volume;
    std::string relative;
    std::string volumeId{}; ///< what the volume is known by wherever it is mounted; empty: by its folder

    explicit operator bool() const { return !volume.empty(); }
    /// The place @p name beneath this one.
    Location child(const std::string& name) const { return {volume, relative + "/" + name, volumeId}; }
    /// The folder that this lies in; not for the volume itself.
    Location parent() const { return {volume, relative.substr(0, relative.rfind('/')), volumeId}; }
    /// The last name of the path beneath the volume.
    std::string name() const { return lastName(relative); }
    /// The volume's folder.
    Location root() const { return {volume, ".", volumeId}; }
    /// The absolute path.
    std::string path() const { return volume + relative.substr(1); }
};

/// A volume that is there.
struct PresentVolume {
    std::string folder;
    std::string id; ///< as Location::volumeId
};

/// Opens files beneath the volumes and nowhere else: the kernel refuses "..", links and races that would lead out. Copies
/// share one set of volumes. Safe on any thread.
class PathResolver {
public:
    /// @p folders: absolute paths of volumes, as bytes.
    explicit PathResolver(const std::vector<std::string>& folders);

    /// Replaces the volumes, of this resolver and all its copies.
    void setVolumes(std::vector<PresentVolume> volumes) const;

    /// Which volume the absolute path @p path lies on; an empty location when on none. Looks at no file.
    Location locate(const std::string& path) const;

    /// Opens @p location with open(2) flags @p flags. Without a descriptor, errno says why: EXDEV when the way leads off
    /// the volume, ENOSYS when the kernel cannot keep a path beneath a folder.
    static UniqueFd open(const Location& location, int flags);

private:
    struct Shared {
        Mutex mutex;
        std::vector<PresentVolume> volumes GUARDED_BY(mutex);
    };

    std::vector<PresentVolume> volumes() const;

    std::shared_ptr<Shared> m_shared;
};

/// What errno value @p error means to the user of a volume.
std::string describeError(int error);

/// Logs that what lies at @p location cannot be read, and why.
void logUnreadable(const Location& location, const std::string& reason);

/// The names that @p path is made of; empty ones and "." left out.
std::vector<std::string> splitPath(const std::string& path);

/// @p path without the "/"s at its end.
std::string withoutTrailingSlash(std::string path);

/// Whether @p path lies below folder @p folder or is it, name by name.
bool liesIn(const std::string& path, const std::string& folder);

} // namespace desktop
