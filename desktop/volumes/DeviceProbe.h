#pragma once

#include <string>

namespace desktop {

/// What a device tells of the file system on it; empty where it does not, or where it may not be read.
struct DeviceFacts {
    std::string label;
    std::string uuid;
    std::string type; ///< such as "ext4"
};

/// Probes the block device @p device. Takes two seconds at most, also when the device does not answer.
DeviceFacts probeDevice(const std::string& device);

} // namespace desktop
