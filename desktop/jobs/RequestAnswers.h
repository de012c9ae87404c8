#pragma once

#include "desktop/jobs/EventQueue.h"

namespace desktop {

/// The events that answer one request: any number of pieces, and one that ends it. Safe on any thread.
class RequestAnswers {
public:
    /// @p events must outlive this object and what it has posted.
    explicit RequestAnswers(EventQueue& events);

    /// Posts a piece of the answer, if none has ended it. Waits while many pieces are still to be delivered.
    void piece(int event, std::shared_ptr<void> data);
    /// Ends the answer, if nothing has ended it before.
    void end(int event, std::shared_ptr<void> data);
    /// Nothing is delivered from now on.
    void drop();

private:
    struct State;

    std::shared_ptr<State> m_state;
};

} // namespace desktop
