// The player that the television uses, without a television: pictures are taken from it as a screen does.

#include "bench/LoopLines.h"

#include "desktop/workers/PlayerProcess.h"

#include <fcntl.h>

#include <atomic>
#include <condition_variable>
#include <cstring>
#include <future>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace {

using namespace desktop;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kFrame(40); // of a film of 25 pictures a second

bool isSame(const ScreenFrame& one, const ScreenFrame& other)
{
    return std::memcmp(one.pixels.get(), other.pixels.get(), static_cast<std::size_t>(kWidth) * kHeight * 4) == 0;
}

class PlayerLoop {
public:
    /// Until its first picture is there.
    std::int64_t load(const std::string& file);
    void stop() { m_player.unload(); }
    void pause(bool paused) { m_player.pause(paused); }
    std::int64_t seek(double seconds);
    /// Takes pictures for so long, as often as the film has new ones; their number.
    std::int64_t draw(std::chrono::seconds time);

private:
    ScreenFrame frame();
    void take(const PlayerEvent& event);
    template <typename Condition>
    void waitFor(const Condition& condition);

    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_loaded = false;
    bool m_ended = false;
    int m_positions = 0; ///< that have been told
    std::uint64_t m_medium = 0;
    PlayerProcess m_player{PlayerSettings{.program = PLAYER_PROGRAM, .output = {}},
                           [this](const PlayerEvent& event) { take(event); }};
};

std::int64_t PlayerLoop::load(const std::string& file)
{
    const auto begin = Clock::now();
    PlayerMedium medium;
    medium.type = FILE_TYPE_VIDEO;
    medium.fd = UniqueFd(open(file.c_str(), O_RDONLY | O_CLOEXEC));
    {
        const std::lock_guard lock(m_mutex);
        medium.number = ++m_medium;
        m_loaded = m_ended = false;
    }
    m_player.load(std::move(medium));
    waitFor([this] { return m_loaded; });
    return since(begin);
}

// While it is paused: the picture changes once. The position is told with the jump and with its picture, in this order.
std::int64_t PlayerLoop::seek(double seconds)
{
    const ScreenFrame before = frame();
    const auto begin = Clock::now();
    int told = 0;
    {
        const std::lock_guard lock(m_mutex);
        told = m_positions;
    }
    m_player.seek(seconds);
    do {
        waitFor([this, told] { return m_positions > told; });
        ++told;
    } while (isSame(before, frame()));
    return since(begin);
}

ScreenFrame PlayerLoop::frame()
{
    std::promise<ScreenFrame> drawn;
    m_player.takeFrame(kWidth, kHeight, [&drawn](ScreenFrame frame) { drawn.set_value(std::move(frame)); });
    ScreenFrame frame = drawn.get_future().get();
    if (frame.pixels == nullptr) {
        throw std::runtime_error("there is no picture");
    }
    return frame;
}

std::int64_t PlayerLoop::draw(std::chrono::seconds time)
{
    std::atomic<std::int64_t> asked{0};
    std::atomic<std::int64_t> taken{0};
    std::atomic<std::int64_t> answered{0};
    for (auto due = Clock::now(), end = due + time; due < end; due += kFrame) {
        std::this_thread::sleep_until(due);
        ++asked;
        m_player.takeFrame(kWidth, kHeight, [&](const ScreenFrame& frame) {
            taken += frame.pixels != nullptr ? 1 : 0;
            ++answered;
        });
    }
    while (answered < asked) {
        std::this_thread::sleep_for(kFrame);
    }
    return taken;
}

void PlayerLoop::take(const PlayerEvent& event)
{
    const std::lock_guard lock(m_mutex);
    if (event.medium != m_medium) {
        return;
    }
    m_loaded = m_loaded || std::holds_alternative<PlayerLoaded>(event.told);
    m_ended = m_ended || std::holds_alternative<PlayerEnded>(event.told);
    m_positions += std::holds_alternative<PlayerPosition>(event.told) ? 1 : 0;
    m_changed.notify_all();
}

template <typename Condition>
void PlayerLoop::waitFor(const Condition& condition)
{
    std::unique_lock lock(m_mutex);
    const bool isThere = m_changed.wait_for(lock, std::chrono::seconds(10), [&] { return m_ended || condition(); });
    if (!isThere || m_ended) {
        throw std::runtime_error("the player does not play");
    }
}

} // namespace

int main()
{
    PlayerLoop player;
    return answerLines({
        {"load", [&](const std::string& file) { return std::vector{player.load(file)}; }},
        {"pause",
         [&](const std::string& paused) {
             player.pause(paused == "yes");
             return std::vector<std::int64_t>();
         }},
        {"seek", [&](const std::string& seconds) { return std::vector{player.seek(std::stod(seconds))}; }},
        {"stop",
         [&](const std::string&) {
             player.stop();
             return std::vector<std::int64_t>();
         }},
        {"draw",
         [&](const std::string& seconds) { return std::vector{player.draw(std::chrono::seconds(std::stoi(seconds)))}; }},
    });
}
