#include "desktop/workers/MediaWorkers.h"

#include "desktop/workers/WorkerChannel.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <stdexcept>

namespace desktop {

namespace {

constexpr const char* kProgram = "desktop-media-worker";
constexpr const char* kStopped = "No file is read any more.";
constexpr const char* kUnwanted = "The file is not wanted any more.";
constexpr std::size_t kMostAhead = 8; // files that a worker has before it has answered for them

MediaWorkerSettings completed(MediaWorkerSettings settings)
{
    if (settings.program.empty()) {
        settings.program = std::filesystem::read_symlink("/proc/self/exe").parent_path() / kProgram;
    }
    return settings;
}

// In place of an answer, when no worker gave one.
Json::Value failure(const std::string& reason)
{
    Json::Value answer;
    answer["error"] = reason;
    answer["unread"] = true;
    return answer;
}

/// Waits until one of @p waits is ready, or until @p deadline.
void pollUntil(std::chrono::steady_clock::time_point deadline, std::array<pollfd, 3>& waits)
{
    int ready = -1;
    do {
        const auto rest = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        ready = poll(waits.data(), waits.size(), static_cast<int>(std::max<std::int64_t>(rest.count(), 0)));
    } while (ready < 0 && errno == EINTR);
}

} // namespace

MediaWorkers::MediaWorkers(MediaWorkerSettings settings)
    : m_settings(completed(std::move(settings)))
{
}

MediaFacts MediaWorkers::read(int fd, FileType type)
{
    return readAll({{fd, type}}, false).front();
}

std::vector<MediaFacts> MediaWorkers::readAll(const std::vector<OpenMedia>& files, const std::atomic<bool>& cancelled)
{
    std::vector<MediaFacts> facts;
    while (facts.size() < files.size()) {
        const SeatPointer seat = takeSeat();
        if (seat == nullptr || cancelled) {
            facts.resize(files.size(), factsFromJson(failure(seat == nullptr ? kStopped : kUnwanted)));
            break;
        }
        readSome(*seat, files, cancelled, facts);
    }
    return facts;
}

std::string MediaWorkers::makeThumbnail(int fd, FileType type, int width, int height, int output, const Wakeup& abandon)
{
    Json::Value request;
    request["job"] = "thumbnail";
    request["type"] = static_cast<int>(type);
    request["width"] = width;
    request["height"] = height;
    return factsFromJson(ask(request, {fd, output}, &abandon)).error;
}

void MediaWorkers::stop()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_stopped = true;
    m_stop.raise();
    m_left.notify_all();
    m_left.wait(
        lock, [this] { return std::none_of(m_seats.begin(), m_seats.end(), [](const Seat& seat) { return seat.taken; }); });
    for (Seat& seat : m_seats) {
        seat.worker.reset();
    }
}

// The worker gets files ahead of its answers, so that it never waits for one. Answers come in the order of the files: the
// first that is missing is that of the file which stopped it. Ends early, but not without a file, when others want the seat.
void MediaWorkers::readSome(Seat& seat, const std::vector<OpenMedia>& files, const std::atomic<bool>& cancelled,
                            std::vector<MediaFacts>& facts)
try {
    std::size_t sent = facts.size();
    do {
        const std::size_t ahead = othersWait() ? 1 : kMostAhead;
        const std::size_t most = std::min(facts.size() + ahead, files.size());
        while (sent < most && sendFile(seat.worker, files[sent], sent == facts.size())) {
            ++sent;
        }
        facts.push_back(factsFromJson(waitForAnswer(seat.worker, nullptr)));
        if (cancelled && sent > facts.size()) {
            throw std::runtime_error(kUnwanted);
        }
    } while (facts.size() < sent || (facts.size() < files.size() && !cancelled && !othersWait()));
} catch (const std::exception& error) {
    seat.worker.reset(); // whatever state it is in, the next file gets another one
    facts.push_back(factsFromJson(failure(error.what())));
}

Json::Value MediaWorkers::ask(const Json::Value& request, std::initializer_list<int> files, const Wakeup* abandon)
{
    const SeatPointer seat = takeSeat();
    if (seat == nullptr) {
        return failure(kStopped);
    }
    try {
        send(seat->worker, request, files);
        return waitForAnswer(seat->worker, abandon);
    } catch (const std::exception& error) {
        seat->worker.reset(); // whatever state it is in, the next file gets another one
        return failure(error.what());
    }
}

MediaWorkers::SeatPointer MediaWorkers::takeSeat()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    const unsigned int turn = m_comers++;
    m_left.wait(lock, [this, turn] { return m_stopped || (turn == m_served && freeSeat() != nullptr); });
    if (m_stopped) {
        return nullptr;
    }
    Seat* const seat = freeSeat();
    seat->taken = true;
    ++m_served;
    m_left.notify_all(); // there may be another free seat for the next one
    return SeatPointer(seat, {this});
}

// With the mutex held. One whose worker runs already is the better one.
MediaWorkers::Seat* MediaWorkers::freeSeat()
{
    Seat* free = nullptr;
    for (Seat& seat : m_seats) {
        if (!seat.taken && (free == nullptr || seat.worker != nullptr)) {
            free = &seat;
        }
    }
    return free;
}

bool MediaWorkers::othersWait()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_comers != m_served;
}

void MediaWorkers::leaveSeat(Seat& seat)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    seat.taken = false;
    m_left.notify_all();
}

void MediaWorkers::send(Worker& worker, const Json::Value& request, std::initializer_list<int> files) const
{
    if (worker != nullptr && sendMessage(worker->channel(), request, files)) {
        return;
    }
    // None yet, or it has died since its last file: that is not this file's fault.
    worker = std::make_unique<WorkerProcess>(m_settings.program);
    if (!sendMessage(worker->channel(), request, files)) {
        throw std::runtime_error(m_settings.program + " does not run");
    }
}

// Whether the worker has taken @p file. One that has died of a file before it takes none; the missing answer will tell.
bool MediaWorkers::sendFile(Worker& worker, const OpenMedia& file, bool first) const
{
    Json::Value request;
    request["job"] = "facts";
    request["type"] = static_cast<int>(file.type);
    if (!first) {
        return sendMessage(worker->channel(), request, {file.fd});
    }
    send(worker, request, {file.fd});
    return true;
}

Json::Value MediaWorkers::waitForAnswer(Worker& worker, const Wakeup* abandon) const
{
    std::array<pollfd, 3> waits = {
        {{worker->channel(), POLLIN, 0}, {m_stop.fd(), POLLIN, 0}, {abandon != nullptr ? abandon->fd() : -1, POLLIN, 0}}};
    pollUntil(std::chrono::steady_clock::now() + m_settings.patience, waits);
    if (waits[1].revents != 0 || waits[2].revents != 0) {
        throw std::runtime_error(kUnwanted);
    }
    if (waits[0].revents == 0) {
        throw std::runtime_error("The file took too long to read.");
    }
    auto answer = receiveMessage(worker->channel());
    if (!answer) {
        throw std::runtime_error("The file stopped the process that read it.");
    }
    return std::move(answer->body);
}

} // namespace desktop
