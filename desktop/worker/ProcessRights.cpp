#include "desktop/worker/ProcessRights.h"

#include "desktop/workers/WorkerChannel.h"

#include <grp.h>
#include <linux/capability.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define SANITIZER_WITH_SHADOW
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define SANITIZER_WITH_SHADOW
#endif
#endif

namespace desktop {

namespace {

bool limit(__rlimit_resource resource, rlim_t value)
{
    const rlimit both = {value, value};
    return setrlimit(resource, &both) == 0;
}

constexpr id_t kNobody = 65534; // in users and groups alike

// A process of root's becomes nobody's. In a user namespace there may be no nobody, or no right to become one.
bool dropUser()
{
    const auto done = [](int result) { return result == 0 || errno == EINVAL || errno == EPERM; };
    return geteuid() != 0 || (done(setgroups(0, nullptr)) && done(setresgid(kNobody, kNobody, kNobody)) &&
                              done(setresuid(kNobody, kNobody, kNobody)));
}

} // namespace

// Not the kernel's signal for a parent's death: that one comes when the thread that started us ends.
void endWithTheOtherSide()
{
    std::thread([] {
        pollfd wait = {kWorkerChannel, 0, 0}; // only for its hang-up
        while (poll(&wait, 1, -1) <= 0) {
        }
        _exit(0);
    }).detach();
}

// Root's, and those that the program has in a user namespace of its own.
bool dropRights()
{
    for (unsigned long capability = 0; prctl(PR_CAPBSET_READ, capability, 0, 0, 0) >= 0; ++capability) {
        prctl(PR_CAPBSET_DROP, capability, 0, 0, 0); // fails for those who have none to gain
    }
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    const __user_cap_data_struct none[_LINUX_CAPABILITY_U32S_3] = {};
    return dropUser() && syscall(SYS_capset, &header, none) == 0;
}

bool limitMemoryAndFiles([[maybe_unused]] rlim_t memory, rlim_t fileSize)
{
#ifndef SANITIZER_WITH_SHADOW // which is larger than any limit
    if (!limit(RLIMIT_AS, memory)) {
        return false;
    }
#endif
    return limit(RLIMIT_CORE, 0) && limit(RLIMIT_FSIZE, fileSize);
}

} // namespace desktop
