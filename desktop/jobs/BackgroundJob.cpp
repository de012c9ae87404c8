#include "desktop/jobs/BackgroundJob.h"

#include "desktop/base/Log.h"

#include <condition_variable>
#include <exception>
#include <mutex>

namespace desktop {

namespace {

constexpr std::chrono::seconds kTimeout(2);

} // namespace

struct BackgroundJob::State {
    std::stop_source cancelled;
    std::mutex mutex;
    std::condition_variable changed;
    bool finished = false;

    void run(const Work& work)
    {
        try {
            work(cancelled.get_token());
        } catch (const std::exception& error) {
            logLine(LogLevel::Error, std::string("work in the background has failed: ") + error.what());
        }
        const std::lock_guard<std::mutex> lock(mutex);
        finished = true;
        changed.notify_all();
    }
};

BackgroundJob::BackgroundJob(Work work)
    : m_state(std::make_shared<State>())
    , m_thread([state = m_state, work = std::move(work)] { state->run(work); })
{
}

BackgroundJob::~BackgroundJob()
{
    cancel();
    if (m_thread.joinable() && waitFor(kTimeout)) {
        m_thread.join();
    } else {
        detach();
    }
}

void BackgroundJob::cancel()
{
    m_state->cancelled.request_stop();
}

void BackgroundJob::detach()
{
    cancel();
    if (m_thread.joinable()) {
        m_thread.detach(); // it ends when the kernel lets go of it
    }
}

bool BackgroundJob::waitFor(std::chrono::milliseconds time) const
{
    std::unique_lock<std::mutex> lock(m_state->mutex);
    return m_state->changed.wait_for(lock, time, [this] { return m_state->finished; });
}

} // namespace desktop
