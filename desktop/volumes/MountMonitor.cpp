#include "desktop/volumes/MountMonitor.h"

#include <libmount.h>
#include <sys/mount.h>

#include <system_error>

namespace desktop {

namespace {

constexpr const char* kMountTable = "/proc/self/mountinfo";

struct UnrefTable {
    void operator()(libmnt_table* table) const { mnt_unref_table(table); }
};
using Table = std::unique_ptr<libmnt_table, UnrefTable>;

struct FreeIterator {
    void operator()(libmnt_iter* iterator) const { mnt_free_iter(iterator); }
};
using Iterator = std::unique_ptr<libmnt_iter, FreeIterator>;

std::string textOf(const char* text)
{
    return text != nullptr ? text : "";
}

} // namespace

void MountMonitor::Unref::operator()(libmnt_monitor* monitor) const
{
    mnt_unref_monitor(monitor);
}

MountMonitor::MountMonitor()
    : m_monitor(mnt_new_monitor())
{
    const int error = m_monitor != nullptr ? mnt_monitor_enable_kernel(m_monitor.get(), 1) : -ENOMEM;
    m_fd = error == 0 ? mnt_monitor_get_fd(m_monitor.get()) : error;
    if (m_fd < 0) {
        throw std::system_error(-m_fd, std::generic_category(), "cannot watch for mounts");
    }
}

void MountMonitor::clear()
{
    while (mnt_monitor_next_change(m_monitor.get(), nullptr, nullptr) == 0) {
    }
}

std::vector<Mount> readMounts()
{
    std::vector<Mount> mounts;
    const Table table(mnt_new_table_from_file(kMountTable));
    const Iterator iterator(mnt_new_iter(MNT_ITER_FORWARD));
    libmnt_fs* found = nullptr;
    unsigned long propagation = 0;
    while (table != nullptr && iterator != nullptr && mnt_table_next_fs(table.get(), iterator.get(), &found) == 0) {
        mnt_fs_get_propagation(found, &propagation);
        mounts.push_back({mnt_fs_get_id(found), textOf(mnt_fs_get_target(found)), textOf(mnt_fs_get_srcpath(found)),
                          textOf(mnt_fs_get_root(found)), textOf(mnt_fs_get_fstype(found)),
                          (propagation & (MS_SHARED | MS_SLAVE)) != 0});
    }
    return mounts;
}

} // namespace desktop
