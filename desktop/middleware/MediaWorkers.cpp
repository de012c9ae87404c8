#include "desktop/middleware/MediaWorkers.h"

#include "desktop/middleware/WorkerChannel.h"

#include <poll.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>

namespace desktop {

namespace {

constexpr const char* kProgram = "desktop-media-worker";

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
    Json::Value request;
    request["job"] = "facts";
    request["type"] = static_cast<int>(type);
    return factsFromJson(ask(request, {fd}, nullptr));
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
    m_left.wait(lock, [this] { return !m_seats[0].taken && !m_seats[1].taken; });
    for (Seat& seat : m_seats) {
        seat.worker.reset();
    }
}

Json::Value MediaWorkers::ask(const Json::Value& request, std::initializer_list<int> files, const Wakeup* abandon)
{
    const auto leave = [this](Seat* seat) { leaveSeat(*seat); };
    const std::unique_ptr<Seat, decltype(leave)> seat(takeSeat(), leave);
    if (seat == nullptr) {
        return failure("No file is read any more.");
    }
    try {
        send(seat->worker, request, files);
        return waitForAnswer(seat->worker, abandon);
    } catch (const std::exception& error) {
        seat->worker.reset(); // whatever state it is in, the next file gets another one
        return failure(error.what());
    }
}

MediaWorkers::Seat* MediaWorkers::takeSeat()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    Seat* free = nullptr;
    m_left.wait(lock, [this, &free] {
        for (Seat& seat : m_seats) {
            // One whose worker runs already is the better one.
            if (!seat.taken && (free == nullptr || seat.worker != nullptr)) {
                free = &seat;
            }
        }
        return m_stopped || free != nullptr;
    });
    if (m_stopped) {
        return nullptr;
    }
    free->taken = true;
    return free;
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

Json::Value MediaWorkers::waitForAnswer(Worker& worker, const Wakeup* abandon) const
{
    std::array<pollfd, 3> waits = {
        {{worker->channel(), POLLIN, 0}, {m_stop.fd(), POLLIN, 0}, {abandon != nullptr ? abandon->fd() : -1, POLLIN, 0}}};
    pollUntil(std::chrono::steady_clock::now() + m_settings.patience, waits);
    if (waits[1].revents != 0 || waits[2].revents != 0) {
        throw std::runtime_error("The file is not wanted any more.");
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
