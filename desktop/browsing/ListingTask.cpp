#include "desktop/browsing/ListingTask.h"

#include "desktop/base/Log.h"

#include <cerrno>
#include <new>

namespace desktop {

namespace {

// The first end counts.
void finish(const ListingTask::OutcomePointer& outcome, int error, ListingPointer listing,
            const ListingTask::Context& context) REQUIRES(outcome->mutex);

void finish(const ListingTask::OutcomePointer& outcome, int error, ListingPointer listing,
            const ListingTask::Context& context)
{
    if (outcome->finished) {
        return;
    }
    outcome->error = error;
    if (!outcome->cancelled.stop_requested()) {
        outcome->listing = error == 0 ? std::move(listing) : nullptr;
        if (outcome->opened) {
            context.done({outcome->listing, error, outcome->withdrawn.get_token()});
        }
    }
    outcome->finished = true;
}

int openFolder(OpenedFolder& folder, ListingTask::Outcome& outcome)
{
    const int error = LocationOpener::open(folder);
    const LockGuard lock(outcome.mutex);
    outcome.opened = error == 0 && !outcome.finished;
    outcome.changed.notify_all();
    return error;
}

int readOrFail(OpenedFolder& folder, const ListingTask::Context& context, ListingTask::Outcome& outcome,
               const std::stop_token& stopping, ListingPointer& listing)
try {
    const int error = openFolder(folder, outcome);
    if (error != 0) {
        return error;
    }
    listing = context.known(folder.stamp);
    if (listing != nullptr) {
        return 0;
    }
    listing = std::make_shared<Listing>();
    return readListing(std::move(folder), context.panoramas.get(), stopping, context.progress, *listing);
} catch (const std::bad_alloc&) {
    return ENOMEM;
}

void readOnThread(OpenedFolder& folder, const ListingTask::Context& context, const ListingTask::OutcomePointer& outcome,
                  const std::stop_token& stopping)
{
    ListingPointer listing;
    int error = EIO;
    try {
        error = readOrFail(folder, context, *outcome, stopping, listing);
    } catch (const std::exception& failure) {
        logLine(LogLevel::Error, std::string("a folder cannot be read: ") + failure.what());
    }
    const LockGuard lock(outcome->mutex);
    finish(outcome, error, std::move(listing), context);
    outcome->changed.notify_all();
}

} // namespace

ListingTask::ListingTask(OpenedFolder folder, Context context)
    : m_directory(folder.directory)
    , m_volume(folder.location.volume)
    , m_context(std::make_shared<const Context>(std::move(context)))
    , m_outcome(std::make_shared<Outcome>())
    , m_job([opened = std::make_shared<OpenedFolder>(std::move(folder)), context = m_context,
             outcome = m_outcome](const std::stop_token& stopping) { readOnThread(*opened, *context, outcome, stopping); })
{
}

void ListingTask::cancel()
{
    m_outcome->cancelled.request_stop();
    withdraw();
    m_job.cancel();
    const LockGuard lock(m_outcome->mutex); // Context::done may be running
    m_outcome->listing.reset();
}

void ListingTask::fail(int error)
{
    m_job.cancel();
    const LockGuard lock(m_outcome->mutex);
    finish(m_outcome, error, nullptr, *m_context);
    m_outcome->changed.notify_all();
}

int ListingTask::waitUntilOpened(std::chrono::milliseconds time) const
{
    UniqueLock lock(m_outcome->mutex);
    const bool answered = m_outcome->changed.wait_for(
        lock.native(), time, [this]() REQUIRES(m_outcome->mutex) { return m_outcome->opened || m_outcome->finished; });
    if (!answered) {
        return ETIMEDOUT;
    }
    return m_outcome->opened ? 0 : m_outcome->error;
}

bool ListingTask::waitFor(std::chrono::milliseconds time) const
{
    UniqueLock lock(m_outcome->mutex);
    return m_outcome->changed.wait_for(lock.native(), time,
                                       [this]() REQUIRES(m_outcome->mutex) { return m_outcome->finished; });
}

ListingPointer ListingTask::listing() const
{
    const LockGuard lock(m_outcome->mutex);
    return m_outcome->listing;
}

} // namespace desktop
