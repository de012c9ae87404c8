#pragma once

#include "desktop/base/UniqueFd.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace desktop {

/// A place on a stick: the stick's folder and a path beneath it ("." for the stick itself), as bytes.
struct Location {
    std::string stick;
    std::string relative;

    explicit operator bool() const { return !stick.empty(); }
    /// The place @p name beneath this one.
    Location child(const std::string& name) const { return {stick, relative + "/" + name}; }
    /// The absolute path.
    std::string path() const { return stick + relative.substr(1); }
};

/// Opens files beneath the sticks and nowhere else: the kernel refuses "..", links and races that would lead out. Copies
/// share one set of sticks. Safe on any thread.
class PathResolver {
public:
    /// @p sticks: absolute paths of folders, as bytes.
    explicit PathResolver(std::vector<std::string> sticks);

    /// Replaces the sticks, of this resolver and all its copies.
    void setSticks(std::vector<std::string> sticks) const;
    std::vector<std::string> sticks() const;

    /// Which stick the absolute path @p path lies on; an empty location when on none. Looks at no file.
    Location locate(const std::string& path) const;

    /// Opens @p location with open(2) flags @p flags. Without a descriptor, errno says why: EXDEV when the way leads off
    /// the stick, ENOSYS when the kernel cannot keep a path beneath a folder.
    static UniqueFd open(const Location& location, int flags);

private:
    struct Shared {
        std::mutex mutex;
        std::vector<std::string> sticks;
    };

    std::shared_ptr<Shared> m_shared;
};

/// What errno value @p error means to the user of a stick.
std::string describeError(int error);

/// Logs that what lies at @p location cannot be read, and why.
void logUnreadable(const Location& location, const std::string& reason);

/// The names that @p path is made of; empty ones and "." left out.
std::vector<std::string> splitPath(const std::string& path);

/// Whether @p path lies below folder @p folder or is it, name by name.
bool liesIn(const std::string& path, const std::string& folder);

} // namespace desktop
