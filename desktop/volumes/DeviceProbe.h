#pragma once

#include <string>

namespace desktop {

/// The file system on a device; members are empty where it has no such name, or where it may not be read.
struct DeviceDescription {
    std::string label;
    std::string uuid;
    std::string type; ///< such as "ext4"
};

/// Probes the block device @p device. Takes two seconds at most, also when the device does not answer.
DeviceDescription probeDevice(const std::string& device);

} // namespace desktop
