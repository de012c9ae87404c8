#include "desktop/host/LaterMounts.h"

#include "desktop/files/EntryStatus.h"
#include "desktop/jobs/BackgroundJob.h"
#include "desktop/volumes/MountMonitor.h"

#include <algorithm>
#include <filesystem>
#include <iterator>

namespace desktop {

namespace {

constexpr std::chrono::seconds kTimeout(1);

bool propagatesTo(const std::string& folder, const std::vector<Mount>& mounts)
{
    const Mount* innermost = nullptr;
    for (const Mount& mount : mounts) {
        // Of mounts in one place the last one is on top.
        if (liesIn(folder, mount.folder) && (innermost == nullptr || mount.folder.size() >= innermost->folder.size())) {
            innermost = &mount;
        }
    }
    return innermost == nullptr || innermost->propagates;
}

bool mayBeMountedOn(const std::string& folder)
{
    const auto status = statusWithoutWaiting(folder, STATX_TYPE);
    if (!status) {
        return true;
    }
    if ((status->stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0) {
        return false;
    }
    const auto isEmpty = runWithin<bool>(kTimeout, [folder](const std::stop_token&) {
        std::error_code unreadable;
        return std::filesystem::is_empty(folder, unreadable);
    });
    return isEmpty.value_or(false);
}

} // namespace

LaterMounts::LaterMounts(const VolumeSources& sources)
{
    const std::vector<Mount> mounts = readMounts();
    for (const auto* const folders : {&sources.folders, &sources.mountFolders}) {
        std::copy_if(folders->begin(), folders->end(), std::back_inserter(m_withoutPropagation),
                     [&mounts](const std::string& folder) { return !propagatesTo(folder, mounts); });
    }
}

std::vector<std::string> LaterMounts::unseen() const
{
    std::vector<std::string> folders;
    std::copy_if(m_withoutPropagation.begin(), m_withoutPropagation.end(), std::back_inserter(folders), mayBeMountedOn);
    return folders;
}

} // namespace desktop
