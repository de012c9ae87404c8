#pragma once

#include "desktop/host/Interrupts.h"

#include "desktop/base/Wakeup.h"

#include <json/json.h>

#include <map>
#include <mutex>
#include <string>

namespace desktop {

/// The requests whose answer comes later, with a notification. A command answers its latest request only, so there is at
/// most one for each. Safe on any thread.
class PendingAnswers {
public:
    enum class Wait { Answered, Interrupted, TimedOut };

    /// @p command is about to be executed with @p request; the answer may come before it returns. Followed by succeeded() or
    /// refused(), or by neither when the plugin could not even read the request: what was pending then stays so.
    void begin(const std::string& command, const Json::Value& request);
    void succeeded();
    void refused();
    /// @p command has been stopped: no answer will come.
    void forget(const std::string& command);
    /// Notification @p name with @p body has come.
    void notified(const std::string& name, const Json::Value& body);
    /// Work goes on: whoever waits has reason to.
    void stillWorking();

    /// Waits until nothing is pending; gives up when nothing has been heard for @p patienceMs milliseconds.
    Wait wait(const Interrupts& interrupts, int patienceMs);
    /// The commands that wait for an answer, each with its reqId.
    std::map<std::string, std::string> pending() const;

private:
    /// The command that is being executed.
    struct Running {
        std::string command;
        std::string reqId;
        bool answered = false;
    };

    mutable std::mutex m_mutex;
    Running m_running;
    std::map<std::string, std::string> m_pending; ///< command to reqId
    Wakeup m_news;
};

} // namespace desktop
