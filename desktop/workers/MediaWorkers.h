#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/base/Wakeup.h"
#include "desktop/formats/PlaylistEntry.h"
#include "desktop/workers/MediaMetadata.h"
#include "desktop/workers/WorkerProcess.h"

#include <json/json.h>

#include <array>
#include <chrono>
#include <condition_variable>
#include <initializer_list>
#include <memory>
#include <stop_token>

namespace desktop {

struct MediaWorkerSettings {
    /// The worker's program; empty: the one that was built or installed together with the program that runs.
    std::string program;
    /// How long one file may take.
    std::chrono::milliseconds timeout{5000};
};

/// What a playlist file holds.
struct PlaylistContent {
    PlaylistEntries entries; ///< texts as the parser gives them; nothing in them is to be trusted
    std::size_t omitted = 0; ///< how many more there are than a playlist may have
    std::string error;       ///< why it could not be read
};

/// Reads media files in two processes of their own, started when they are needed. One that dies of a file, or takes too long
/// over it, is replaced, and that file alone has an error. Safe on any thread.
class MediaWorkers : public MediaReader {
public:
    explicit MediaWorkers(MediaWorkerSettings settings = {});
    ~MediaWorkers() override { stop(); }

    MediaMetadata read(int fd, FileType type) override;
    std::vector<MediaMetadata> readAll(const std::vector<OpenMedia>& files, const std::stop_token& cancelled) override;

    /// Writes the picture that stands for the open file @p fd of kind @p type into @p output as a JPEG file, at most
    /// @p width x @p height pixels, turned as it is to be shown and never enlarged. Returns why there is none; empty when
    /// there is. Returns at once when a stop of @p cancelled is requested.
    std::string makeThumbnail(int fd, FileType type, int width, int height, int output, const std::stop_token& cancelled);

    /// What the open playlist file @p fd lists, whose name has @p extension, in lower case, or one that tells no format.
    PlaylistContent readPlaylist(int fd, const std::string& extension);

    /// Every file that is being read, or comes later, has an error at once.
    void stop();

private:
    using Worker = std::unique_ptr<WorkerProcess>;
    struct Slot {
        bool taken = false;
        Worker worker;
    };
    struct ReleaseSlot {
        MediaWorkers* workers = nullptr;
        void operator()(Slot* slot) const { workers->releaseSlot(*slot); }
    };
    using SlotPointer = std::unique_ptr<Slot, ReleaseSlot>;

    Json::Value ask(const Json::Value& request, std::initializer_list<int> files, const std::stop_token& cancelled);
    void readSome(Slot& slot, const std::vector<OpenMedia>& files, const std::stop_token& cancelled,
                  std::vector<MediaMetadata>& metadata);
    SlotPointer acquireSlot();
    Slot* freeSlot() REQUIRES(m_mutex);
    void releaseSlot(Slot& slot);
    bool othersWait();
    bool sendFile(Worker& worker, const OpenMedia& file, bool first) const;
    void send(Worker& worker, const Json::Value& request, std::initializer_list<int> files) const;
    Json::Value waitForAnswer(Worker& worker, const Wakeup* cancelled) const;

    const MediaWorkerSettings m_settings;
    Mutex m_mutex;
    std::condition_variable m_slotReleased;
    bool m_stopped GUARDED_BY(m_mutex) = false;
    unsigned int
        m_ticketsIssued GUARDED_BY(m_mutex) = 0; ///< callers that have asked for a slot; they are served in their order
    unsigned int m_ticketsServed GUARDED_BY(m_mutex) = 0; ///< how many of them have had one
    Wakeup m_stop;
    std::array<Slot, kWorkerCount> m_slots;
};

} // namespace desktop
