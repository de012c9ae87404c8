#pragma once

#include "desktop/base/Wakeup.h"
#include "desktop/workers/MediaFacts.h"
#include "desktop/workers/WorkerProcess.h"

#include <json/json.h>

#include <array>
#include <chrono>
#include <condition_variable>
#include <initializer_list>
#include <memory>
#include <mutex>

namespace desktop {

struct MediaWorkerSettings {
    /// The worker's program; empty: the one beside the program that runs.
    std::string program;
    /// How long one file may take.
    std::chrono::milliseconds patience{5000};
};

/// Reads media files in two processes of their own, started when they are needed. One that dies of a file, or takes too long
/// over it, is replaced, and that file alone has an error. Safe on any thread.
class MediaWorkers : public MediaReader {
public:
    explicit MediaWorkers(MediaWorkerSettings settings = {});
    ~MediaWorkers() override { stop(); }

    MediaFacts read(int fd, FileType type) override;
    std::vector<MediaFacts> readAll(const std::vector<OpenMedia>& files, const std::atomic<bool>& cancelled) override;

    /// Writes the picture that stands for the open file @p fd of kind @p type into @p output as a JPEG file, at most
    /// @p width x @p height pixels, turned as it is to be shown and never enlarged. Returns why there is none; empty when
    /// there is. Returns at once when @p abandon is raised.
    std::string makeThumbnail(int fd, FileType type, int width, int height, int output, const Wakeup& abandon);

    /// Every file that is being read, or comes later, has an error at once.
    void stop();

private:
    using Worker = std::unique_ptr<WorkerProcess>;
    struct Seat {
        bool taken = false;
        Worker worker;
    };
    struct LeaveSeat {
        MediaWorkers* workers = nullptr;
        void operator()(Seat* seat) const { workers->leaveSeat(*seat); }
    };
    using SeatPointer = std::unique_ptr<Seat, LeaveSeat>;

    Json::Value ask(const Json::Value& request, std::initializer_list<int> files, const Wakeup* abandon);
    void readSome(Seat& seat, const std::vector<OpenMedia>& files, const std::atomic<bool>& cancelled,
                  std::vector<MediaFacts>& facts);
    SeatPointer takeSeat();
    Seat* freeSeat();
    void leaveSeat(Seat& seat);
    bool othersWait();
    bool sendFile(Worker& worker, const OpenMedia& file, bool first) const;
    void send(Worker& worker, const Json::Value& request, std::initializer_list<int> files) const;
    Json::Value waitForAnswer(Worker& worker, const Wakeup* abandon) const;

    const MediaWorkerSettings m_settings;
    std::mutex m_mutex;
    std::condition_variable m_left;
    bool m_stopped = false;
    unsigned int m_comers = 0; ///< who ever wanted a seat; they are served in their order
    unsigned int m_served = 0; ///< how many of them have had one
    Wakeup m_stop;
    std::array<Seat, kWorkerCount> m_seats;
};

} // namespace desktop
