#include "desktop/jobs/VolumeJob.h"

#include <algorithm>

namespace desktop {

VolumeJob::VolumeJob(EventQueue& events)
    : m_events(events)
{
}

void VolumeJob::start(const std::string& volume, Work work, OnRemoved onRemoved)
{
    cancel();
    const auto ended = [](const std::unique_ptr<BackgroundJob>& job) { return job->waitFor(std::chrono::milliseconds(0)); };
    const LockGuard lock(m_mutex);
    m_jobs.erase(std::remove_if(m_jobs.begin(), m_jobs.end(), ended), m_jobs.end());
    m_volume = volume;
    m_onRemoved = std::move(onRemoved);
    m_answers = std::make_shared<RequestAnswers>(m_events);
    m_jobs.push_back(std::make_unique<BackgroundJob>(
        [work = std::move(work), answers = m_answers](const std::stop_token& cancelled) { work(cancelled, *answers); }));
}

void VolumeJob::cancel()
{
    const LockGuard lock(m_mutex);
    if (m_answers != nullptr) {
        m_answers->drop();
        m_jobs.back()->cancel();
    }
}

void VolumeJob::volumeRemoved(const std::string& volume)
{
    const LockGuard lock(m_mutex);
    if (m_answers != nullptr && m_volume == volume) {
        m_onRemoved(*m_answers);
        m_jobs.back()->cancel();
    }
}

void VolumeJob::stop()
{
    cancel();
    const LockGuard lock(m_mutex);
    m_answers.reset();
    m_jobs.clear();
}

} // namespace desktop
