#pragma once

#include "desktop/base/ThreadAnnotations.h"

#include <json/json.h>

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <future>
#include <string>
#include <thread>

namespace desktop {

/// What has become of a command.
struct CommandReply {
    bool result = false; ///< whether the plugin says that it succeeded
    Json::Value body{Json::objectValue};
    std::string error; ///< why the plugin has no result to give; empty when it has one
    /// Names the request in RequestEnded, when its answer comes later; 0 when it does not.
    std::uint64_t request = 0;
};

/// A command on its way to the plugin.
struct QueuedCommand {
    std::string name;
    Json::Value request;
    std::promise<CommandReply> reply;
};

/// Runs commands on a thread of its own, one at a time and in the order in which they are added.
class CommandQueue {
public:
    /// Runs the command and fulfils its promise. Does not throw.
    using Runner = std::function<void(QueuedCommand&)>;

    explicit CommandQueue(Runner run);
    ~CommandQueue() { close(); }
    CommandQueue(const CommandQueue&) = delete;
    CommandQueue& operator=(const CommandQueue&) = delete;

    /// Once the queue is closed, the reply is an error. Safe on any thread.
    std::future<CommandReply> add(std::string name, Json::Value request);
    /// Waits for the command that is running and answers the others with an error. Called by the queue's owner alone.
    void close();

private:
    void runCommands();

    const Runner m_run;
    Mutex m_mutex;
    std::deque<QueuedCommand> m_commands GUARDED_BY(m_mutex);
    bool m_closed GUARDED_BY(m_mutex) = false;
    std::condition_variable m_changed;
    std::thread m_thread; ///< last: it uses the others
};

} // namespace desktop
