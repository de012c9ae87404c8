#include "desktop/metadata/StoredPlace.h"

namespace desktop {

namespace {

std::string join(const std::vector<std::string>& names)
{
    std::string path;
    for (const std::string& name : names) {
        path += path.empty() ? name : "/" + name;
    }
    return path;
}

} // namespace

StoredPlace storedAs(const Location& location)
{
    return {location.volumeId.empty() ? location.volume : location.volumeId, join(splitPath(location.relative))};
}

} // namespace desktop
