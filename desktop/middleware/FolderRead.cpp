#include "desktop/middleware/FolderRead.h"

#include <cerrno>
#include <new>

namespace desktop {

namespace {

constexpr std::chrono::seconds kPatience(2);

int readOrFail(const FolderToRead& folder, const std::atomic<bool>& cancelled, const ReadProgress& progress,
               Listing& listing)
try {
    return readFolder(folder, cancelled, progress, listing);
} catch (const std::bad_alloc&) {
    return ENOMEM;
}

void readOnThread(const FolderToRead& folder, const ReadProgress& progress, const FolderRead::Done& done,
                  const FolderRead::OutcomePointer& outcome)
{
    auto listing = std::make_shared<Listing>();
    const int error = readOrFail(folder, outcome->cancelled, progress, *listing);
    const std::lock_guard<std::mutex> lock(outcome->mutex);
    outcome->error = error;
    if (!outcome->cancelled) {
        outcome->listing = error == 0 ? listing : nullptr;
        done(outcome);
    }
    outcome->finished = true;
    outcome->changed.notify_all();
}

} // namespace

FolderRead::FolderRead(FolderToRead folder, ReadProgress progress, Done done)
    : m_directory(folder.directory)
    , m_outcome(std::make_shared<Outcome>())
    , m_thread([folder = std::move(folder), progress = std::move(progress), done = std::move(done), outcome = m_outcome] {
        readOnThread(folder, progress, done, outcome);
    })
{
}

FolderRead::~FolderRead()
{
    cancel();
    if (waitFor(kPatience)) {
        m_thread.join();
    } else {
        m_thread.detach(); // it ends when the kernel lets go of it, and touches nothing but its own outcome
    }
}

void FolderRead::cancel()
{
    m_outcome->cancelled = true;
    const std::lock_guard<std::mutex> lock(m_outcome->mutex); // Done may be running
    m_outcome->listing.reset();
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
