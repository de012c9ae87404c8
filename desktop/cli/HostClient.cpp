#include "desktop/cli/HostClient.h"

#include <poll.h>

#include <array>

namespace desktop {

namespace {

constexpr std::size_t kQueueLimit = 100'000; // a reader of the program's output may pause for long

} // namespace

HostClient::HostClient(Host& host, const Interrupts& interrupts)
    : m_host(host)
    , m_interrupts(interrupts)
    , m_subscription(host.subscribe(kQueueLimit))
{
}

CommandReply HostClient::execute(const std::string& command, const Json::Value& request)
{
    CommandReply reply = m_host.execute(command, request).get();
    if (reply.request != 0) {
        m_pending[reply.request] = {command, request.get("reqId", "")};
    }
    return reply;
}

void HostClient::takeUpdates(const UpdateHandler& handle)
{
    while (const HostUpdatePointer update = m_subscription->take()) {
        if (const auto* ended = std::get_if<RequestEnded>(update.get())) {
            m_pending.erase(ended->number);
        }
        handle(*update);
    }
}

HostClient::WaitResult HostClient::waitForAnswers(std::chrono::milliseconds timeout, const UpdateHandler& handle)
{
    std::array<pollfd, 2> waits = {{{fd(), POLLIN, 0}, {m_interrupts.fd(), POLLIN, 0}}};
    takeUpdates(handle);
    while (!m_pending.empty()) {
        const int ready = poll(waits.data(), waits.size(), static_cast<int>(timeout.count()));
        if (waits[1].revents != 0) {
            return WaitResult::Interrupted;
        }
        if (ready == 0) {
            return WaitResult::TimedOut;
        }
        takeUpdates(handle);
        if (!m_pending.empty() && isCutOff()) {
            return WaitResult::CutOff;
        }
    }
    return WaitResult::Answered;
}

} // namespace desktop
