#pragma once

#include "desktop/base/UniqueFd.h"

#include <sys/types.h>

#include <string>
#include <vector>

namespace desktop {

/// A helper program at work. It ends with the object, whatever it is doing.
class WorkerProcess {
public:
    /// Throws std::system_error when @p program cannot be started.
    explicit WorkerProcess(const std::string& program, const std::vector<std::string>& arguments = {});
    ~WorkerProcess();
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;

    /// This end of the wire to it.
    int channel() const { return m_channel.get(); }

private:
    UniqueFd m_channel;
    pid_t m_pid = -1;
};

} // namespace desktop
