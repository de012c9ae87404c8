#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/base/Wakeup.h"
#include "desktop/workers/MediaPlayer.h"
#include "desktop/workers/PictureMemory.h"
#include "desktop/workers/WorkerChannel.h"
#include "desktop/workers/WorkerProcess.h"

#include <atomic>
#include <chrono>
#include <deque>
#include <map>
#include <optional>
#include <thread>

namespace desktop {

struct PlayerSettings {
    /// The player's program; empty: the one that was built or installed together with the program that runs.
    std::string program;
    PlayerOutput output;
    bool ahead = true;                         ///< whether a process is started before there is anything to play
    std::chrono::milliseconds load{10000};     ///< how long a medium may take to be loaded
    std::chrono::milliseconds silence{3000};   ///< how long the process may say nothing while there is a medium
    std::chrono::milliseconds closing{700};    ///< how long it may hold the medium before, when the next one waits for that
    std::chrono::milliseconds unloading{3000}; ///< how long it may hold a medium that has ended
    std::chrono::milliseconds frame{900};      ///< how long a picture may take
};

/// Plays in a process of its own, which may die of a medium, or wait for one for ever, without harm to this program: it is
/// replaced then.
class PlayerProcess : public MediaPlayer {
public:
    PlayerProcess(PlayerSettings settings, Handler handle);
    /// Returns at once; frames that have been asked for are given up first.
    ~PlayerProcess() override;
    PlayerProcess(const PlayerProcess&) = delete;
    PlayerProcess& operator=(const PlayerProcess&) = delete;

    void load(PlayerMedium medium) override;
    void unload() override;
    void pause(bool paused) override;
    void wind(int speed) override;
    void seek(double seconds) override;
    void setOptions(const PlayerOptions& options) override;
    void takeFrame(int width, int height, FrameHandler handle) override;

private:
    using Clock = std::chrono::steady_clock;

    /// What the process is playing, or is to play.
    struct Playing {
        std::uint64_t number = 0;
        std::shared_ptr<PlayerMedium> medium; ///< until it is loaded, for another process
        Clock::time_point loadEnd;
        double position = 0;   ///< seconds, the last that has been told
        bool answered = false; ///< the process has said something since it got the medium
        bool closed = false;   ///< the process needs its file no more, as that of a photo
    };
    /// A picture that somebody waits for.
    struct Frame {
        int width = 0;
        int height = 0;
        std::shared_ptr<PictureMemory> memory; ///< not used again unless it is answered: it may be drawn into late
        FrameHandler handle;
        Clock::time_point end;
    };

    void post(std::function<void()> work);
    void command(const char* what, const char* key, const Json::Value& value);

    // All that follows is the thread's.
    void work();
    bool workPosted();
    void wait();
    Clock::time_point nextDeadline() const;
    void watchDeadlines();
    void watchFrames(Clock::time_point now);
    void watchClosing(Clock::time_point now);

    void begin(std::shared_ptr<PlayerMedium> medium);
    void sendMedium();
    bool trySendMedium();
    void letGo();
    void expectClosing(std::chrono::milliseconds time);
    void orderFrame(int width, int height, FrameHandler handle);
    std::shared_ptr<PictureMemory> memoryFor(int width, int height);
    void frameDrawn(const Json::Value& body);

    void start();
    void startAhead();
    void lose(const std::string& why);
    void died();
    void endProcess();
    void receive();
    void handleMessage(WorkerMessage message);
    void handleEvent(PlayerEvent event, const std::vector<UniqueFd>& files);
    bool isTooMany();
    void endPlaying(PlayerEnded::Reason reason, const std::string& text);

    const PlayerSettings m_settings;
    const Handler m_handle;
    Wakeup m_wakeup;
    std::atomic<std::uint64_t> m_wanted{0}; ///< the medium that something is to be told of; 0: none
    Mutex m_mutex;
    bool m_stopped GUARDED_BY(m_mutex) = false;
    std::deque<std::function<void()>> m_posted GUARDED_BY(m_mutex);

    std::unique_ptr<WorkerProcess> m_process;
    bool m_speaks = false; ///< the process has said something
    Clock::time_point m_heard;
    Clock::time_point m_countedSince;
    int m_events = 0; ///< since then
    std::optional<Playing> m_playing;
    std::map<std::uint64_t, Clock::time_point> m_closing; ///< media that the process still holds, and until when it may
    std::map<int, Frame> m_frames;
    PictureMemories m_memories;
    int m_lastFrame = 0;
    std::thread m_thread;
};

/// Players in processes of their own, with @p output: music has no window.
PlayerFactory playerProcesses(const PlayerOutput& output);

} // namespace desktop
