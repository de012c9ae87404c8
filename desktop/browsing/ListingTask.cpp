#include "desktop/browsing/FolderRead.h"

#include <cerrno>
#include <new>

namespace desktop {

namespace {

constexpr std::chrono::seconds kPatience(2);

int readOrFail(const FolderToRead& folder, const std::atomic<bool>& stopping, const ReadProgress& progress, Listing& listing)
try {
    return readFolder(folder, stopping, progress, listing);
} catch (const std::bad_alloc&) {
    return ENOMEM;
}

// With the outcome's mutex held. The first end counts.
void finish(const FolderRead::OutcomePointer& outcome, int error, ListingPointer listing, const FolderRead::Done& done)
{
    if (outcome->finished) {
        return;
    }
    outcome->error = error;
    if (!outcome->cancelled) {
        outcome->listing = error == 0 ? std::move(listing) : nullptr;
        done(outcome);
    }
    outcome->finished = true;
}

void readOnThread(const FolderToRead& folder, const ReadProgress& progress, const FolderRead::Done& done,
                  const FolderRead::OutcomePointer& outcome)
{
    auto listing = std::make_shared<Listing>();
    const int error = readOrFail(folder, outcome->stopping, progress, *listing);
    const std::lock_guard<std::mutex> lock(outcome->mutex);
    finish(outcome, error, std::move(listing), done);
    outcome->threadEnded = true;
    outcome->changed.notify_all();
}

} // namespace

FolderRead::FolderRead(FolderToRead folder, ReadProgress progress, Done done)
    : m_directory(folder.directory)
    , m_stick(folder.location.stick)
    , m_done(std::move(done))
    , m_outcome(std::make_shared<Outcome>())
    , m_thread([folder = std::move(folder), progress = std::move(progress), done = m_done, outcome = m_outcome] {
        readOnThread(folder, progress, done, outcome);
    })
{
}

FolderRead::~FolderRead()
{
    cancel();
    bool ended = false;
    {
        std::unique_lock<std::mutex> lock(m_outcome->mutex);
        ended = m_outcome->changed.wait_for(lock, kPatience, [this] { return m_outcome->threadEnded; });
    }
    if (ended) {
        m_thread.join();
    } else {
        m_thread.detach(); // it ends when the kernel lets go of it, and touches nothing but its own outcome
    }
}

void FolderRead::cancel()
{
    m_outcome->cancelled = true;
    m_outcome->stopping = true;
    const std::lock_guard<std::mutex> lock(m_outcome->mutex); // Done may be running
    m_outcome->listing.reset();
}

void FolderRead::fail(int error)
{
    m_outcome->stopping = true;
    const std::lock_guard<std::mutex> lock(m_outcome->mutex);
    finish(m_outcome, error, nullptr, m_done);
    m_outcome->changed.notify_all();
}

bool FolderRead::threadEnded() const
{
    const std::lock_guard<std::mutex> lock(m_outcome->mutex);
    return m_outcome->threadEnded;
}

bool FolderRead::waitFor(std::chrono::milliseconds time) const
{
    std::unique_lock<std::mutex> lock(m_outcome->mutex);
    return m_outcome->changed.wait_for(lock, time, [this] { return m_outcome->finished; });
}

ListingPointer FolderRead::listing() const
{
    const std::lock_guard<std::mutex> lock(m_outcome->mutex);
    return m_outcome->listing;
}

} // namespace desktop
