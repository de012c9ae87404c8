#include "desktop/player/PlayerConfinement.h"

#include "desktop/player/FileRules.h"
#include "desktop/player/MemoryFile.h"
#include "desktop/worker/ProcessRights.h"
#include "desktop/workers/WorkerChannel.h"

#include <fcntl.h>
#include <malloc.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>

namespace desktop {

namespace {

// Libraries and the stacks of some twenty threads take half a gigabyte of addresses; what is left decodes 8K video. The
// drivers of a window have room for themselves.
constexpr rlim_t kMemory = 1536UL << 20;           // bytes of address space
constexpr rlim_t kMemoryWithWindow = 4096UL << 20; // bytes of address space
constexpr rlim_t kFile = 256UL << 20;              // bytes, of files in memory
constexpr int kArenas = 2;                         // each further one would reserve 64 MiB of addresses

std::string environment(const char* name)
{
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

/// What @p name says, or else @p below beneath the folder that @p folder says; empty when neither says anything.
std::string placeOf(const char* name, const char* folder, const char* below)
{
    const std::string place = environment(name);
    const std::string parent = environment(folder);
    return !place.empty() || parent.empty() ? place : parent + below;
}

// What lets us into the display is read before this process loses the right to, and left to it as a file in memory.
void keepDisplaysKey()
{
    constexpr std::int64_t kMost = 64 << 10; // bytes
    const UniqueFd file(open(placeOf("XAUTHORITY", "HOME", "/.Xauthority").c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    UniqueFd copy = copyInMemory(file.get(), kMost);
    if (copy) {
        setenv("XAUTHORITY", ("/proc/self/fd/" + std::to_string(copy.release())).c_str(), 1);
    }
}

void addWindow(FileRules& rules)
{
    for (const char* const path : {"/sys/dev", "/sys/devices", "/sys/class/drm", "/etc/X11", "/tmp/.X11-unix"}) {
        rules.readable.emplace_back(path);
    }
    for (const char* const path : {"/dev/dri", "/dev/nvidia0", "/dev/nvidiactl", "/dev/nvidia-modeset"}) {
        rules.writable.emplace_back(path);
    }
}

void addSound(FileRules& rules)
{
    for (const char* const path : {"/etc/pulse", "/etc/asound.conf", "/etc/alsa", "/etc/pipewire", "/proc/asound"}) {
        rules.readable.emplace_back(path);
    }
    rules.readable.push_back(placeOf("PULSE_COOKIE", "HOME", "/.config/pulse/cookie"));
    rules.readable.push_back(placeOf("PULSE_RUNTIME_PATH", "XDG_RUNTIME_DIR", "/pulse"));
    rules.writable.emplace_back("/dev/snd");
}

FileRules rulesFor(const PlayerOutput& output)
{
    FileRules rules;
    rules.readable = {"/usr",
                      "/lib",
                      "/lib64",
                      "/lib32",
                      "/etc/fonts",
                      "/etc/ld.so.cache",
                      "/etc/localtime",
                      "/etc/drirc",
                      "/etc/glvnd",
                      "/var/cache/fontconfig",
                      "/proc/self",
                      "/proc/cpuinfo",
                      "/proc/meminfo",
                      "/proc/sys/vm/overcommit_memory",
                      "/sys/devices/system/cpu",
                      "/dev/urandom",
                      "/dev/random"};
    rules.writable = {"/dev/null", "/dev/zero"};
    if (output.window) {
        addWindow(rules);
    }
    if (output.sound) {
        addSound(rules);
    }
    std::erase(rules.readable, "");
    return rules;
}

// What would reach another process, the computer's set-up, or a file's owner and mode, which the file rules do not know.
constexpr int kForbidden[] = {SCMP_SYS(ptrace),
                              SCMP_SYS(process_vm_readv),
                              SCMP_SYS(process_vm_writev),
                              SCMP_SYS(process_madvise),
                              SCMP_SYS(pidfd_open),
                              SCMP_SYS(pidfd_getfd),
                              SCMP_SYS(pidfd_send_signal),
                              SCMP_SYS(kcmp),
                              SCMP_SYS(execve),
                              SCMP_SYS(execveat),
                              SCMP_SYS(fork),
                              SCMP_SYS(vfork),
                              SCMP_SYS(mount),
                              SCMP_SYS(umount2),
                              SCMP_SYS(pivot_root),
                              SCMP_SYS(chroot),
                              SCMP_SYS(move_mount),
                              SCMP_SYS(open_tree),
                              SCMP_SYS(fsopen),
                              SCMP_SYS(fsconfig),
                              SCMP_SYS(fsmount),
                              SCMP_SYS(fspick),
                              SCMP_SYS(mount_setattr),
                              SCMP_SYS(setns),
                              SCMP_SYS(unshare),
                              SCMP_SYS(bpf),
                              SCMP_SYS(perf_event_open),
                              SCMP_SYS(userfaultfd),
                              SCMP_SYS(io_uring_setup),
                              SCMP_SYS(io_uring_enter),
                              SCMP_SYS(io_uring_register),
                              SCMP_SYS(add_key),
                              SCMP_SYS(request_key),
                              SCMP_SYS(keyctl),
                              SCMP_SYS(init_module),
                              SCMP_SYS(finit_module),
                              SCMP_SYS(delete_module),
                              SCMP_SYS(kexec_load),
                              SCMP_SYS(kexec_file_load),
                              SCMP_SYS(reboot),
                              SCMP_SYS(swapon),
                              SCMP_SYS(swapoff),
                              SCMP_SYS(settimeofday),
                              SCMP_SYS(clock_settime),
                              SCMP_SYS(clock_adjtime),
                              SCMP_SYS(adjtimex),
                              SCMP_SYS(sethostname),
                              SCMP_SYS(setdomainname),
                              SCMP_SYS(syslog),
                              SCMP_SYS(acct),
                              SCMP_SYS(quotactl),
                              SCMP_SYS(open_by_handle_at),
                              SCMP_SYS(chmod),
                              SCMP_SYS(fchmodat),
                              SCMP_SYS(chown),
                              SCMP_SYS(lchown),
                              SCMP_SYS(fchownat),
                              SCMP_SYS(utimensat),
                              SCMP_SYS(utime),
                              SCMP_SYS(utimes),
                              SCMP_SYS(futimesat),
                              SCMP_SYS(setxattr),
                              SCMP_SYS(lsetxattr),
                              SCMP_SYS(removexattr),
                              SCMP_SYS(lremovexattr),
                              SCMP_SYS(truncate),
                              SCMP_SYS(tkill),
                              SCMP_SYS(rt_sigqueueinfo),
                              SCMP_SYS(rt_tgsigqueueinfo),
                              SCMP_SYS(migrate_pages),
                              SCMP_SYS(move_pages),
                              SCMP_SYS(personality),
                              SCMP_SYS(inotify_add_watch),
                              SCMP_SYS(fanotify_init),
                              SCMP_SYS(msgget)};

struct ReleaseFilter {
    void operator()(void* filter) const { seccomp_release(filter); }
};

bool forbid(scmp_filter_ctx filter, int call, std::initializer_list<scmp_arg_cmp> arguments, int error = EPERM)
{
    return seccomp_rule_add_array(filter, SCMP_ACT_ERRNO(static_cast<unsigned int>(error)), call,
                                  static_cast<unsigned int>(arguments.size()), arguments.begin()) == 0;
}

// Threads only, with the C library's flags for one; the newer call hides its flags from the filter.
bool forbidProcesses(scmp_filter_ctx filter)
{
    return forbid(filter, SCMP_SYS(clone3), {}, ENOSYS) &&
           forbid(filter, SCMP_SYS(clone), {{0, SCMP_CMP_MASKED_EQ, CLONE_THREAD, 0}});
}

// Calls that may name this process alone; 0 stands for it in some.
bool forbidOthers(scmp_filter_ctx filter)
{
    const auto self = static_cast<scmp_datum_t>(getpid());
    const scmp_arg_cmp isOther = {0, SCMP_CMP_NE, self, 0};
    const scmp_arg_cmp isNamed = {0, SCMP_CMP_NE, 0, 0};
    return forbid(filter, SCMP_SYS(kill), {isOther}) && forbid(filter, SCMP_SYS(tgkill), {isOther}) &&
           forbid(filter, SCMP_SYS(prlimit64), {isNamed});
}

// To displays and sound servers of this computer at most.
bool forbidNetwork(scmp_filter_ctx filter, const PlayerOutput& output)
{
    if (!output.window && !output.sound) {
        return forbid(filter, SCMP_SYS(socket), {}) && forbid(filter, SCMP_SYS(connect), {});
    }
    return forbid(filter, SCMP_SYS(socket), {{0, SCMP_CMP_NE, AF_UNIX, 0}});
}

bool forbidCalls(const PlayerOutput& output)
{
    const std::unique_ptr<void, ReleaseFilter> filter(seccomp_init(SCMP_ACT_ALLOW));
    if (filter == nullptr || seccomp_attr_set(filter.get(), SCMP_FLTATR_CTL_TSYNC, 1) != 0) {
        return false;
    }
    for (const int call : kForbidden) {
        if (!forbid(filter.get(), call, {})) {
            return false;
        }
    }
    return forbidProcesses(filter.get()) && forbidOthers(filter.get()) && forbidNetwork(filter.get(), output) &&
           seccomp_load(filter.get()) == 0;
}

} // namespace

std::string confinePlayer(const PlayerOutput& output)
{
    if (close_range(kWorkerChannel + 1, ~0U, 0) != 0) {
        return "No file is played: open ones could not be closed.";
    }
    if (output.window) {
        keepDisplaysKey();
    }
    if (!dropRights()) {
        return "No file is played: rights could not be given up.";
    }
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) {
        return "No file is played: privileges could not be given up.";
    }
    mallopt(M_ARENA_MAX, kArenas);
    if (!limitMemoryAndFiles(output.window ? kMemoryWithWindow : kMemory, kFile)) {
        return "No file is played: resources could not be limited.";
    }
    if (!allowOnlyFiles(rulesFor(output))) {
        return "No file is played: files could not be limited.";
    }
    if (!forbidCalls(output)) {
        return "No file is played: system calls could not be limited.";
    }
    endWithTheOtherSide();
    return "";
}

} // namespace desktop
