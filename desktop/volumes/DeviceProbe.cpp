#include "desktop/volumes/DeviceProbe.h"

#include "desktop/base/UniqueFd.h"
#include "desktop/jobs/BackgroundJob.h"

#include <blkid/blkid.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <memory>

namespace desktop {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds kTimeout(2);
constexpr const char* kLinksByUuid = "/dev/disk/by-uuid";

struct FreeProbe {
    void operator()(blkid_struct_probe* probe) const { blkid_free_probe(probe); }
};

std::string valueOf(blkid_probe probe, const char* name)
{
    const char* value = nullptr;
    return blkid_probe_lookup_value(probe, name, &value, nullptr) == 0 ? value : "";
}

DeviceDescription readSuperblock(int device)
{
    const std::unique_ptr<blkid_struct_probe, FreeProbe> probe(blkid_new_probe());
    if (probe == nullptr || blkid_probe_set_device(probe.get(), device, 0, 0) != 0) {
        return {};
    }
    blkid_probe_enable_superblocks(probe.get(), 1);
    blkid_probe_set_superblocks_flags(probe.get(), BLKID_SUBLKS_LABEL | BLKID_SUBLKS_UUID | BLKID_SUBLKS_TYPE);
    if (blkid_do_safeprobe(probe.get()) != 0) {
        return {};
    }
    return {valueOf(probe.get(), "LABEL"), valueOf(probe.get(), "UUID"), valueOf(probe.get(), "TYPE")};
}

// An ordinary user may not read the device, but the system has done so and left a link.
DeviceDescription readLinks(const std::string& device)
{
    DeviceDescription description;
    std::error_code none; // a system without such links
    for (const fs::directory_entry& link : fs::directory_iterator(kLinksByUuid, none)) {
        if (fs::equivalent(link.path(), device, none)) {
            description.uuid = link.path().filename();
        }
    }
    return description;
}

DeviceDescription describeDevice(const std::string& device)
{
    const UniqueFd fd(open(device.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status = {};
    const bool readable = fd && fstat(fd.get(), &status) == 0 && S_ISBLK(status.st_mode);
    return readable ? readSuperblock(fd.get()) : readLinks(device);
}

} // namespace

DeviceDescription probeDevice(const std::string& device)
{
    const auto probe = [device](const std::stop_token&) { return describeDevice(device); };
    return runWithin<DeviceDescription>(kTimeout, probe).value_or(DeviceDescription());
}

} // namespace desktop
