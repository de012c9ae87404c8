#include "desktop/jobs/RequestAnswers.h"

#include "desktop/base/ThreadAnnotations.h"

#include <stop_token>

namespace desktop {

namespace {

// So much may wait for a listener that is slower than the work.
constexpr int kMaxPieces = 64;

/// Counts what is to be delivered. Its mutex is taken last of all: the queue lets go of data with its own one held.
class Backlog {
public:
    void waitForRoom()
    {
        UniqueLock lock(m_mutex);
        m_changed.wait(lock.native(), [this]() REQUIRES(m_mutex) { return m_count < kMaxPieces || m_open; });
        ++m_count;
    }
    void leave()
    {
        const LockGuard lock(m_mutex);
        --m_count;
        m_changed.notify_all();
    }
    /// Nobody waits from now on.
    void open()
    {
        const LockGuard lock(m_mutex);
        m_open = true;
        m_changed.notify_all();
    }

private:
    Mutex m_mutex;
    std::condition_variable m_changed;
    int m_count GUARDED_BY(m_mutex) = 0;
    bool m_open GUARDED_BY(m_mutex) = false;
};

} // namespace

struct RequestAnswers::State {
    explicit State(EventQueue& eventQueue)
        : events(eventQueue)
    {
    }

    EventQueue& events;
    std::stop_source dropped;
    Backlog backlog;
    Mutex mutex;
    bool ended GUARDED_BY(mutex) = false;
};

RequestAnswers::RequestAnswers(EventQueue& events)
    : m_state(std::make_shared<State>(events))
{
}

void RequestAnswers::piece(int event, std::shared_ptr<void> data)
{
    const std::shared_ptr<State> state = m_state;
    state->backlog.waitForRoom();
    void* const piece = data.get();
    const std::shared_ptr<void> counted(piece, [state, data = std::move(data)](void*) { state->backlog.leave(); });
    const LockGuard lock(state->mutex);
    if (!state->ended && !state->dropped.stop_requested()) {
        state->events.post(event, counted, [state] { return !state->dropped.stop_requested(); });
    }
}

void RequestAnswers::end(int event, std::shared_ptr<void> data)
{
    const std::shared_ptr<State> state = m_state;
    state->backlog.open();
    const LockGuard lock(state->mutex);
    if (!state->ended && !state->dropped.stop_requested()) {
        state->ended = true;
        state->events.post(event, std::move(data), [state] { return !state->dropped.stop_requested(); });
    }
}

void RequestAnswers::drop()
{
    m_state->dropped.request_stop();
    m_state->backlog.open();
}

} // namespace desktop
