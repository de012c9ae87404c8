#pragma once

#include <string>

namespace tvfirmware {

/// Whether a device is a DLNA media server: by its mount path, or because the middleware says so (device type 1).
inline bool isDlna(const std::string& path, int devType)
{
    return path.find("/servers") != std::string::npos || devType == 1;
}

} // namespace tvfirmware
