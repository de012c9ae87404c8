#include "desktop/host/PendingAnswers.h"

#include <poll.h>

#include <algorithm>
#include <array>

namespace desktop {

namespace {

/// Commands that answer later, and how.
struct LateAnswer {
    const char* command;
    const char* notification;
};

constexpr std::array kLateAnswers = {
    LateAnswer{"storagemedia.folder.chgdir", "storagemedia.folder.chgdir.complete"},
    LateAnswer{"storagemedia.video.searchFiles", "storagemedia.video.searchFiles.complete"},
    LateAnswer{"storagemedia.group.musicorphoto", "storagemedia.group.musicorphoto.complete"},
    LateAnswer{"storagemedia.start.thumbnail", "startThumbnail.complete"},
};

std::string reqIdOf(const Json::Value& object)
{
    const Json::Value reqId = object.isObject() ? object.get("reqId", "") : Json::Value("");
    return reqId.isString() ? reqId.asString() : "";
}

bool answersLater(const std::string& command)
{
    return std::any_of(kLateAnswers.begin(), kLateAnswers.end(),
                       [&command](const LateAnswer& late) { return command == late.command; });
}

std::string commandAnsweredBy(const std::string& notification)
{
    const auto found = std::find_if(kLateAnswers.begin(), kLateAnswers.end(),
                                    [&notification](const LateAnswer& late) { return notification == late.notification; });
    return found == kLateAnswers.end() ? "" : found->command;
}

} // namespace

void PendingAnswers::begin(const std::string& command, const Json::Value& request)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_running = {command, reqIdOf(request), false};
}

void PendingAnswers::succeeded()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_pending.erase(m_running.command);
    if (answersLater(m_running.command) && !m_running.answered) {
        m_pending[m_running.command] = m_running.reqId;
    }
}

void PendingAnswers::refused()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_pending.erase(m_running.command);
}

void PendingAnswers::forget(const std::string& command)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_pending.erase(command);
}

void PendingAnswers::notified(const std::string& name, const Json::Value& body)
{
    const std::string command = commandAnsweredBy(name);
    const std::string reqId = reqIdOf(body);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto pending = m_pending.find(command);
        if (pending != m_pending.end() && pending->second == reqId) {
            m_pending.erase(pending);
        }
        m_running.answered = m_running.answered || (m_running.command == command && m_running.reqId == reqId);
    }
    m_news.raise();
}

void PendingAnswers::stillWorking()
{
    m_news.raise();
}

PendingAnswers::Wait PendingAnswers::wait(const Interrupts& interrupts, int patienceMs)
{
    pollfd waits[] = {{m_news.fd(), POLLIN, 0}, {interrupts.fd(), POLLIN, 0}};
    while (!pending().empty()) {
        const int ready = poll(waits, 2, patienceMs);
        if (waits[1].revents != 0) {
            return Wait::Interrupted;
        }
        if (ready == 0) {
            return Wait::TimedOut;
        }
        m_news.clear();
    }
    return Wait::Answered;
}

std::map<std::string, std::string> PendingAnswers::pending() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_pending;
}

} // namespace desktop
