#include "desktop/thumbnails/ThumbnailRun.h"

#include "desktop/base/Log.h"
#include "desktop/base/ThreadAnnotations.h"
#include "desktop/text/NameEncoding.h"

#include "platform/SocMwEvents.h"

#include <algorithm>
#include <cerrno>
#include <set>
#include <stop_token>

namespace desktop {

namespace {

/// An event's record with the texts that it points to.
struct ReadyThumbnail {
    std::string path;
    std::string picture;
    thumbnail_ready_s event;

    ReadyThumbnail(std::size_t index, std::string file, std::string pictureFile)
        : path(std::move(file))
        , picture(std::move(pictureFile))
    {
        event.index = static_cast<std::int32_t>(index);
        event.ok = picture.empty() ? 0 : 1;
        event.path = path.c_str();
        event.filepath = picture.c_str();
    }
};

} // namespace

/// Shared by the threads and the events that have been posted.
struct ThumbnailRun::State : std::enable_shared_from_this<State> {
    State(ThumbnailRequest what, std::shared_ptr<ThumbnailMaker> by, std::shared_ptr<PictureFolder> into, EventQueue& to,
          std::shared_ptr<const ReadReporter> failures)
        : request(std::move(what))
        , maker(std::move(by))
        , folder(std::move(into))
        , events(to)
        , reporter(std::move(failures))
        , entries(request.paths.size())
    {
    }

    struct Entry {
        bool finished = false;
        std::string picture;
    };

    const ThumbnailRequest request;
    const std::shared_ptr<ThumbnailMaker> maker;
    const std::shared_ptr<PictureFolder> folder;
    EventQueue& events;
    const std::shared_ptr<const ReadReporter> reporter;
    std::stop_source making;    ///< stopped when no more pictures are needed
    std::stop_source cancelled; ///< stopped when no more events are wanted
    Mutex mutex;
    std::vector<Entry> entries GUARDED_BY(mutex);
    std::size_t begun GUARDED_BY(mutex) = 0;         ///< entries that a thread has taken
    std::size_t posted GUARDED_BY(mutex) = 0;        ///< entries whose events are on their way
    std::set<std::string> stalled GUARDED_BY(mutex); ///< volumes that did not answer: not each entry waits for them

    void work();
    bool take(std::size_t& index);
    std::string make(const std::string& path);
    bool isStalled(const std::string& path);
    void finish(std::size_t index, std::string picture);
    void postFinished() REQUIRES(mutex);
    void volumeRemoved(const std::string& volume);
};

void ThumbnailRun::State::work()
{
    std::size_t index = 0;
    while (take(index)) {
        finish(index, make(request.paths[index]));
    }
}

bool ThumbnailRun::State::take(std::size_t& index)
{
    const LockGuard lock(mutex);
    while (begun < entries.size() && entries[begun].finished) {
        ++begun;
    }
    index = begun++;
    return !cancelled.stop_requested() && index < entries.size();
}

std::string ThumbnailRun::State::make(const std::string& path)
{
    if (path.empty()) {
        return "";
    }
    const ThumbnailResult made = isStalled(path) ? ThumbnailResult{"", describeError(ETIMEDOUT), ""}
                                                 : maker->make(path, request.form, *folder, making.get_token());
    if (!made.stalledVolume.empty()) {
        const LockGuard lock(mutex);
        stalled.insert(made.stalledVolume);
    }
    if (!made.error.empty() && !cancelled.stop_requested()) {
        logLine(LogLevel::Warning, "no thumbnail of " + path + ": " + made.error);
        reporter->failed(path, made.error);
    }
    return made.picture;
}

bool ThumbnailRun::State::isStalled(const std::string& path)
{
    const LockGuard lock(mutex);
    return stalled.count(maker->volumeOf(path)) > 0;
}

void ThumbnailRun::State::finish(std::size_t index, std::string picture)
{
    const LockGuard lock(mutex);
    if (!entries[index].finished) { // its volume may have been removed meanwhile
        entries[index] = {true, std::move(picture)};
        postFinished();
    }
}

// In the order of the request: the last one is taken for the end.
void ThumbnailRun::State::postFinished()
{
    for (; !cancelled.stop_requested() && posted < entries.size() && entries[posted].finished; ++posted) {
        const auto ready = std::make_shared<ReadyThumbnail>(posted, request.paths[posted], entries[posted].picture);
        events.post(request.event, std::shared_ptr<void>(ready, &ready->event),
                    [state = shared_from_this()] { return !state->cancelled.stop_requested(); });
    }
}

void ThumbnailRun::State::volumeRemoved(const std::string& volume)
{
    const LockGuard lock(mutex);
    for (std::size_t i = posted; i < entries.size(); ++i) {
        if (request.paths[i].empty() || liesIn(decodeName(request.paths[i]), volume)) {
            entries[i].finished = true;
        }
    }
    postFinished();
    if (posted == entries.size()) {
        making.request_stop();
    }
}

ThumbnailRun::ThumbnailRun(ThumbnailRequest request, std::shared_ptr<ThumbnailMaker> maker,
                           std::shared_ptr<PictureFolder> folder, EventQueue& events,
                           std::shared_ptr<const ReadReporter> reporter)
    : m_state(std::make_shared<State>(std::move(request), std::move(maker), std::move(folder), events, std::move(reporter)))
{
    for (std::size_t i = 0; i < kWorkerCount; ++i) {
        m_jobs.push_back(std::make_unique<BackgroundJob>([state = m_state](const std::stop_token&) { state->work(); }));
    }
}

ThumbnailRun::~ThumbnailRun()
{
    cancel();
}

void ThumbnailRun::cancel()
{
    m_state->cancelled.request_stop();
    m_state->making.request_stop();
}

void ThumbnailRun::volumeRemoved(const std::string& volume)
{
    m_state->volumeRemoved(volume);
}

bool ThumbnailRun::ended() const
{
    return std::all_of(m_jobs.begin(), m_jobs.end(),
                       [](const auto& job) { return job->waitFor(std::chrono::milliseconds(0)); });
}

} // namespace desktop
