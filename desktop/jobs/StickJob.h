#pragma once

#include "desktop/jobs/BackgroundJob.h"
#include "desktop/jobs/RequestAnswers.h"

#include <string>
#include <vector>

namespace desktop {

/// Work in the background on one stick that answers a request; the latest request's alone. Operations are called on the
/// command thread unless said otherwise.
class StickJob {
public:
    using Work = std::function<void(const CancelFlag& cancelled, RequestAnswers& answers)>;
    using Lost = std::function<void(RequestAnswers& answers)>;

    explicit StickJob(EventQueue& events);
    ~StickJob() { stop(); }

    /// Cancels the work that runs and begins @p work on @p stick, which answers as soon as it has ended. @p lost answers in
    /// its place when the stick is pulled, for work that the stick may keep.
    void start(const std::string& stick, Work work, Lost lost);
    /// No answer is delivered any more. Returns at once.
    void cancel();
    /// Stick @p stick has been pulled. Safe on any thread.
    void lose(const std::string& stick);
    /// Cancels, and waits for all threads that can end.
    void stop();

private:
    EventQueue& m_events;
    std::mutex m_mutex; ///< for lose()
    std::string m_stick;
    Lost m_lost;
    std::shared_ptr<RequestAnswers> m_answers;          ///< null before the first start
    std::vector<std::unique_ptr<BackgroundJob>> m_jobs; ///< the latest last, and cancelled ones that still end
};

} // namespace desktop
