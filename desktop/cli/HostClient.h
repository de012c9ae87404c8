#pragma once

#include "desktop/cli/Interrupts.h"
#include "desktop/host/Host.h"

#include <chrono>
#include <functional>
#include <map>

namespace desktop {

/// The program as a client of its host: runs commands one after the other and takes the updates in between. Used on one
/// thread.
class HostClient {
public:
    enum class WaitResult { Answered, Interrupted, TimedOut, CutOff };
    using UpdateHandler = std::function<void(const HostUpdate&)>;

    /// How long commands take that show no sign of work before they are given up.
    static constexpr std::chrono::seconds kAnswerTimeout{30};

    HostClient(Host& host, const Interrupts& interrupts);

    /// Runs @p command and waits for its reply.
    CommandReply execute(const std::string& command, const Json::Value& request = Json::Value(Json::objectValue));
    /// Hands the updates that have come so far to @p handle.
    void takeUpdates(const UpdateHandler& handle);
    /// Hands over updates until no command of this client waits for an answer; gives up when none has come for @p timeout.
    WaitResult waitForAnswers(std::chrono::milliseconds timeout, const UpdateHandler& handle);
    /// A request of this client whose answer is still to come.
    struct PendingAnswer {
        std::string command;
        Json::Value reqId;
    };
    /// Those there are, the oldest first.
    const std::map<std::uint64_t, PendingAnswer>& pendingAnswers() const { return m_pending; }

    Host& host() { return m_host; }
    /// For poll(2): readable while there are updates to take, and once the client is cut off.
    int fd() const { return m_subscription->fd(); }
    /// Whether no more updates will come: they were not taken for too long, or the host has closed.
    bool isCutOff() const { return m_subscription->state() != Subscription::State::Open; }

private:
    Host& m_host;
    const Interrupts& m_interrupts;
    const SubscriptionPointer m_subscription;
    std::map<std::uint64_t, PendingAnswer> m_pending; ///< by CommandReply::request
};

} // namespace desktop
