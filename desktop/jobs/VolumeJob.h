#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/jobs/BackgroundJob.h"
#include "desktop/jobs/RequestAnswers.h"

#include <stop_token>
#include <string>
#include <vector>

namespace desktop {

/// Work in the background on one volume that answers a request; the latest request's alone. Operations are called on the
/// command thread unless said otherwise.
class VolumeJob {
public:
    using Work = std::function<void(const std::stop_token& cancelled, RequestAnswers& answers)>;
    using OnRemoved = std::function<void(RequestAnswers& answers)>;

    explicit VolumeJob(EventQueue& events);
    ~VolumeJob() { stop(); }

    /// Cancels the work that runs and begins @p work on @p volume, which answers as soon as it has ended. @p onRemoved
    /// answers in its place when the volume is removed, for work that the volume may keep.
    void start(const std::string& volume, Work work, OnRemoved onRemoved);
    /// No answer is delivered any more. Returns at once.
    void cancel();
    /// Volume @p volume has been removed. Safe on any thread.
    void volumeRemoved(const std::string& volume);
    /// Cancels, and waits for all threads that can end.
    void stop();

private:
    EventQueue& m_events;
    Mutex m_mutex; ///< for volumeRemoved()
    std::string m_volume GUARDED_BY(m_mutex);
    OnRemoved m_onRemoved GUARDED_BY(m_mutex);
    std::shared_ptr<RequestAnswers> m_answers GUARDED_BY(m_mutex); ///< null before the first start
    std::vector<std::unique_ptr<BackgroundJob>>
        m_jobs GUARDED_BY(m_mutex); ///< the latest last, and cancelled ones that still end
};

} // namespace desktop
