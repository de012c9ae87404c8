#include "desktop/jobs/StickJob.h"

#include <algorithm>

namespace desktop {

StickJob::StickJob(EventQueue& events)
    : m_events(events)
{
}

void StickJob::start(const std::string& stick, Work work, Lost lost)
{
    cancel();
    const auto ended = [](const std::unique_ptr<BackgroundJob>& job) { return job->waitFor(std::chrono::milliseconds(0)); };
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_jobs.erase(std::remove_if(m_jobs.begin(), m_jobs.end(), ended), m_jobs.end());
    m_stick = stick;
    m_lost = std::move(lost);
    m_answers = std::make_shared<RequestAnswers>(m_events);
    m_jobs.push_back(std::make_unique<BackgroundJob>(
        [work = std::move(work), answers = m_answers](const CancelFlag& cancelled) { work(cancelled, *answers); }));
}

void StickJob::cancel()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_answers != nullptr) {
        m_answers->drop();
        m_jobs.back()->cancel();
    }
}

void StickJob::lose(const std::string& stick)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_answers != nullptr && m_stick == stick) {
        m_lost(*m_answers);
        m_jobs.back()->cancel();
    }
}

void StickJob::stop()
{
    cancel();
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_answers.reset();
    m_jobs.clear();
}

} // namespace desktop
