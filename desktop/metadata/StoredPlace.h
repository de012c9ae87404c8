#pragma once

#include "desktop/files/PathResolver.h"

#include <string>
#include <tuple>

namespace desktop {

/// A folder or a file as the databases know it, wherever its volume is mounted.
struct StoredPlace {
    std::string volume; ///< what the volume is known by
    std::string path;   ///< beneath it, names with "/" between them as bytes; "" is the volume itself

    /// Any order, for maps.
    bool operator<(const StoredPlace& other) const { return std::tie(volume, path) < std::tie(other.volume, other.path); }
};

StoredPlace storedAs(const Location& location);

} // namespace desktop
