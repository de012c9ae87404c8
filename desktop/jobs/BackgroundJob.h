#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <thread>

namespace desktop {

/// Work on a thread of its own, so that a file system that does not answer holds up nothing but itself. Such a thread is
/// left behind: the work must own, or not outlive, whatever it touches. Operations are called on one thread.
class BackgroundJob {
public:
    /// @p cancelled: a stop is requested once the result is no longer wanted.
    using Work = std::function<void(const std::stop_token& cancelled)>;

    explicit BackgroundJob(Work work);
    /// Cancels; waits for the thread, but not for long when the file system keeps it.
    ~BackgroundJob();
    BackgroundJob(const BackgroundJob&) = delete;
    BackgroundJob& operator=(const BackgroundJob&) = delete;

    /// Returns at once.
    void cancel();
    /// Cancels; the thread ends when it can, and the destructor does not wait for it.
    void detach();
    /// Whether the work has ended, which it is given @p time for, unless a stop of @p unwanted is requested.
    bool waitFor(std::chrono::milliseconds time, const std::stop_token& unwanted = {}) const;

private:
    struct State;

    std::shared_ptr<State> m_state;
    std::thread m_thread;
};

/// What @p work gives, done in the background; nothing when it takes longer than @p timeout, or fails, or once a stop of
/// @p unwanted is requested.
template <typename Result>
std::optional<Result> runWithin(std::chrono::milliseconds timeout,
                                std::function<Result(const std::stop_token& cancelled)> work,
                                const std::stop_token& unwanted = {})
{
    const auto result = std::make_shared<std::optional<Result>>();
    BackgroundJob job([result, work = std::move(work)](const std::stop_token& cancelled) { *result = work(cancelled); });
    if (!job.waitFor(timeout, unwanted)) {
        job.detach();
        return std::nullopt;
    }
    return std::move(*result);
}

} // namespace desktop
