#include "desktop/jobs/BackgroundJob.h"

#include "desktop/base/Log.h"
#include "desktop/base/ThreadAnnotations.h"

#include <condition_variable>
#include <exception>

namespace desktop {

namespace {

constexpr std::chrono::seconds kTimeout(2);

} // namespace

struct BackgroundJob::State {
    std::stop_source cancelled;
    Mutex mutex;
    std::condition_variable_any changed;
    bool finished GUARDED_BY(mutex) = false;

    void run(const Work& work)
    {
        try {
            work(cancelled.get_token());
        } catch (const std::exception& error) {
            logLine(LogLevel::Error, std::string("work in the background has failed: ") + error.what());
        }
        const LockGuard lock(mutex);
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

bool BackgroundJob::waitFor(std::chrono::milliseconds time, const std::stop_token& unwanted) const
{
    UniqueLock lock(m_state->mutex);
    return m_state->changed.wait_for(lock.native(), unwanted, time,
                                     [this]() REQUIRES(m_state->mutex) { return m_state->finished; });
}

} // namespace desktop
