#include "desktop/workers/MediaWorkers.h"

#include "desktop/base/ProgramFiles.h"
#include "desktop/workers/PlaylistTransfer.h"
#include "desktop/workers/WorkerChannel.h"

#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace desktop {

namespace {

constexpr const char* kStopped = "No file is read any more.";
constexpr const char* kUnwanted = "The file is not wanted any more.";
constexpr std::size_t kMaxAhead = 8; // files that a worker has before it has answered for them

MediaWorkerSettings completed(MediaWorkerSettings settings)
{
    if (settings.program.empty()) {
        settings.program = programFile(WORKER_BUILT, WORKER_INSTALLED);
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

// The beginning of file @p fd, at most @p most bytes.
std::string contentOf(int fd, std::size_t most)
{
    std::string content;
    char bytes[65536];
    ssize_t got = 1;
    while (got > 0 && content.size() < most) {
        const std::size_t wanted = std::min(sizeof bytes, most - content.size());
        got = TEMP_FAILURE_RETRY(pread(fd, bytes, wanted, static_cast<off_t>(content.size())));
        content.append(bytes, got > 0 ? static_cast<std::size_t>(got) : 0);
    }
    return content;
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

MediaMetadata MediaWorkers::read(int fd, FileType type)
{
    return readAll({{fd, type}}, {}).front();
}

std::vector<MediaMetadata> MediaWorkers::readAll(const std::vector<OpenMedia>& files, const std::stop_token& cancelled)
{
    std::vector<MediaMetadata> metadata;
    while (metadata.size() < files.size()) {
        const SlotPointer slot = acquireSlot();
        if (slot == nullptr || cancelled.stop_requested()) {
            metadata.resize(files.size(), metadataFromJson(failure(slot == nullptr ? kStopped : kUnwanted)));
            break;
        }
        readSome(*slot, files, cancelled, metadata);
    }
    return metadata;
}

std::string MediaWorkers::makeThumbnail(int fd, FileType type, int width, int height, int output,
                                        const std::stop_token& cancelled)
{
    Json::Value request;
    request["job"] = "thumbnail";
    request["type"] = static_cast<int>(type);
    request["width"] = width;
    request["height"] = height;
    return metadataFromJson(ask(request, {fd, output}, cancelled)).error;
}

PlaylistContent MediaWorkers::readPlaylist(int fd, const std::string& extension)
{
    PlaylistContent content;
    const UniqueFd output(memfd_create("playlist", MFD_CLOEXEC));
    if (!output) {
        content.error = std::generic_category().message(errno);
        return content;
    }
    Json::Value request;
    request["job"] = "playlist";
    request["type"] = static_cast<int>(FILE_TYPE_PLAYLIST);
    request["extension"] = extension;
    const Json::Value answer = ask(request, {fd, output.get()}, {});
    content.error = metadataFromJson(answer).error;
    if (content.error.empty()) {
        content.entries = unpackEntries(contentOf(output.get(), kMaxPackedEntries));
        const std::size_t all = answer["entries"].isUInt() ? answer["entries"].asUInt() : 0;
        content.omitted = all - std::min(all, content.entries.size());
    }
    return content;
}

void MediaWorkers::stop()
{
    UniqueLock lock(m_mutex);
    m_stopped = true;
    m_stop.raise();
    m_slotReleased.notify_all();
    m_slotReleased.wait(lock.native(), [this] {
        return std::none_of(m_slots.begin(), m_slots.end(), [](const Slot& slot) { return slot.taken; });
    });
    for (Slot& slot : m_slots) {
        slot.worker.reset();
    }
}

// The worker gets files ahead of its answers, so that it never waits for one. Answers come in the order of the files: the
// first that is missing is that of the file which stopped it. Ends early, but not without a file, when others want the slot.
void MediaWorkers::readSome(Slot& slot, const std::vector<OpenMedia>& files, const std::stop_token& cancelled,
                            std::vector<MediaMetadata>& metadata)
try {
    std::size_t sent = metadata.size();
    do {
        const std::size_t ahead = othersWait() ? 1 : kMaxAhead;
        const std::size_t most = std::min(metadata.size() + ahead, files.size());
        while (sent < most && sendFile(slot.worker, files[sent], sent == metadata.size())) {
            ++sent;
        }
        metadata.push_back(metadataFromJson(waitForAnswer(slot.worker, nullptr)));
        if (cancelled.stop_requested() && sent > metadata.size()) {
            throw std::runtime_error(kUnwanted);
        }
    } while (metadata.size() < sent || (metadata.size() < files.size() && !cancelled.stop_requested() && !othersWait()));
} catch (const std::exception& error) {
    slot.worker.reset(); // whatever state it is in, the next file gets another one
    metadata.push_back(metadataFromJson(failure(error.what())));
}

Json::Value MediaWorkers::ask(const Json::Value& request, std::initializer_list<int> files, const std::stop_token& cancelled)
{
    Wakeup cancel;
    const std::stop_callback raise(cancelled, [&cancel] { cancel.raise(); });
    const SlotPointer slot = acquireSlot();
    if (slot == nullptr) {
        return failure(kStopped);
    }
    try {
        send(slot->worker, request, files);
        return waitForAnswer(slot->worker, &cancel);
    } catch (const std::exception& error) {
        slot->worker.reset(); // whatever state it is in, the next file gets another one
        return failure(error.what());
    }
}

MediaWorkers::SlotPointer MediaWorkers::acquireSlot()
{
    UniqueLock lock(m_mutex);
    const unsigned int ticket = m_ticketsIssued++;
    m_slotReleased.wait(lock.native(), [this, ticket]() REQUIRES(m_mutex) {
        return m_stopped || (ticket == m_ticketsServed && freeSlot() != nullptr);
    });
    if (m_stopped) {
        return nullptr;
    }
    Slot* const slot = freeSlot();
    slot->taken = true;
    ++m_ticketsServed;
    m_slotReleased.notify_all(); // there may be another free slot for the next one
    return SlotPointer(slot, {this});
}

// One whose worker runs already is the better one.
MediaWorkers::Slot* MediaWorkers::freeSlot()
{
    Slot* free = nullptr;
    for (Slot& slot : m_slots) {
        if (!slot.taken && (free == nullptr || slot.worker != nullptr)) {
            free = &slot;
        }
    }
    return free;
}

bool MediaWorkers::othersWait()
{
    const LockGuard lock(m_mutex);
    return m_ticketsIssued != m_ticketsServed;
}

void MediaWorkers::releaseSlot(Slot& slot)
{
    const LockGuard lock(m_mutex);
    slot.taken = false;
    m_slotReleased.notify_all();
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

// Whether the worker has taken @p file. One that has died of a file before it takes none; the missing answer shows that.
bool MediaWorkers::sendFile(Worker& worker, const OpenMedia& file, bool first) const
{
    Json::Value request;
    request["job"] = "metadata";
    request["type"] = static_cast<int>(file.type);
    if (!first) {
        return sendMessage(worker->channel(), request, {file.fd});
    }
    send(worker, request, {file.fd});
    return true;
}

Json::Value MediaWorkers::waitForAnswer(Worker& worker, const Wakeup* cancelled) const
{
    std::array<pollfd, 3> waits = {{{worker->channel(), POLLIN, 0},
                                    {m_stop.fd(), POLLIN, 0},
                                    {cancelled != nullptr ? cancelled->fd() : -1, POLLIN, 0}}};
    pollUntil(std::chrono::steady_clock::now() + m_settings.timeout, waits);
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
