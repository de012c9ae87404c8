// The floor of playback: libmpv alone, on the same terms as the desktop's player without a display, each picture drawn into
// memory as it comes.

#include "bench/LoopLines.h"

#include <mpv/client.h>
#include <mpv/render.h>

#include <atomic>
#include <clocale>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

/// mpv, and a thread that draws what it shows.
class Mpv {
public:
    Mpv();
    ~Mpv();
    Mpv(const Mpv&) = delete;
    Mpv& operator=(const Mpv&) = delete;

    /// Until the file is loaded, and until its first picture is there.
    std::vector<std::int64_t> load(const std::string& file) { return play({"loadfile", file.c_str(), "replace"}); }
    std::vector<std::int64_t> next() { return play({"playlist-next"}); }
    void append(const std::string& file) { command({"loadfile", file.c_str(), "append"}); }
    void pause(bool paused) { command({"set", "pause", paused ? "yes" : "no"}); }
    std::int64_t seek(const std::string& seconds);
    std::int64_t stop();
    std::int64_t drawn() const { return m_drawn; }

private:
    struct Destroy {
        void operator()(mpv_handle* mpv) const { mpv_terminate_destroy(mpv); }
        void operator()(mpv_render_context* context) const { mpv_render_context_free(context); }
    };

    std::vector<std::int64_t> play(std::vector<const char*> words);
    void command(std::vector<const char*> words);
    void waitFor(mpv_event_id wanted);
    void draw();
    void drawOne();

    std::unique_ptr<mpv_handle, Destroy> m_mpv;
    std::unique_ptr<mpv_render_context, Destroy> m_context;
    std::vector<unsigned char> m_picture;
    std::atomic<std::int64_t> m_drawn{0};
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_updated = false;
    bool m_stopped = false;
    std::thread m_thread;
};

Mpv::Mpv()
    : m_mpv(mpv_create())
    , m_picture(static_cast<std::size_t>(kWidth) * kHeight * 4)
{
    for (const auto& [name, value] : std::map<const char*, const char*>{{"vo", "libmpv"},
                                                                        {"ao", "null"},
                                                                        {"idle", "yes"},
                                                                        {"config", "no"},
                                                                        {"terminal", "no"},
                                                                        {"hwdec", "no"},
                                                                        {"video-timing-offset", "0"}}) {
        mpv_set_option_string(m_mpv.get(), name, value);
    }
    char software[] = MPV_RENDER_API_TYPE_SW;
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_API_TYPE, software}, {MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context* context = nullptr;
    if (mpv_initialize(m_mpv.get()) < 0 || mpv_render_context_create(&context, m_mpv.get(), parameters) < 0) {
        throw std::runtime_error("mpv does not start");
    }
    m_context.reset(context);
    mpv_render_context_set_update_callback(
        context,
        [](void* mpv) {
            auto& self = *static_cast<Mpv*>(mpv);
            const std::lock_guard lock(self.m_mutex);
            self.m_updated = true;
            self.m_changed.notify_all();
        },
        this);
    m_thread = std::thread([this] { draw(); });
}

Mpv::~Mpv()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopped = true;
        m_changed.notify_all();
    }
    m_thread.join();
}

// While it is paused: the next picture that is drawn is the wanted one then.
std::int64_t Mpv::seek(const std::string& seconds)
{
    const auto begin = Clock::now();
    const std::int64_t before = m_drawn;
    command({"seek", seconds.c_str(), "absolute+exact"});
    waitFor(MPV_EVENT_PLAYBACK_RESTART);
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_drawn > before; });
    return since(begin);
}

std::int64_t Mpv::stop()
{
    const auto begin = Clock::now();
    command({"stop"});
    waitFor(MPV_EVENT_END_FILE);
    const std::int64_t took = since(begin);
    waitFor(MPV_EVENT_IDLE);
    return took;
}

std::vector<std::int64_t> Mpv::play(std::vector<const char*> words)
{
    const auto begin = Clock::now();
    command(std::move(words));
    waitFor(MPV_EVENT_FILE_LOADED);
    const std::int64_t loaded = since(begin);
    waitFor(MPV_EVENT_PLAYBACK_RESTART);
    return {loaded, since(begin)};
}

void Mpv::command(std::vector<const char*> words)
{
    words.push_back(nullptr);
    mpv_command_async(m_mpv.get(), 0, words.data());
}

void Mpv::waitFor(mpv_event_id wanted)
{
    for (const mpv_event* event = nullptr; event == nullptr || event->event_id != wanted;) {
        constexpr double kLongest = 10; // seconds
        event = mpv_wait_event(m_mpv.get(), kLongest);
        if (event->event_id == MPV_EVENT_NONE) {
            throw std::runtime_error(std::string("mpv does not tell: ") + mpv_event_name(wanted));
        }
    }
}

void Mpv::draw()
{
    std::unique_lock lock(m_mutex);
    while (!m_stopped) {
        m_changed.wait(lock, [this] { return m_stopped || m_updated; });
        m_updated = false;
        lock.unlock();
        if ((mpv_render_context_update(m_context.get()) & MPV_RENDER_UPDATE_FRAME) != 0) {
            drawOne();
        }
        lock.lock();
        m_changed.notify_all();
    }
}

void Mpv::drawOne()
{
    int size[] = {kWidth, kHeight};
    std::size_t pitch = static_cast<std::size_t>(kWidth) * 4;
    char format[] = "rgb0";
    int no = 0;
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_SW_SIZE, size},
                                     {MPV_RENDER_PARAM_SW_FORMAT, format},
                                     {MPV_RENDER_PARAM_SW_STRIDE, &pitch},
                                     {MPV_RENDER_PARAM_SW_POINTER, m_picture.data()},
                                     {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &no},
                                     {MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context_render(m_context.get(), parameters);
    ++m_drawn;
}

std::vector<std::int64_t> loadAnew(const std::string& file)
{
    const auto begin = Clock::now();
    Mpv mpv;
    const std::int64_t made = since(begin);
    const std::vector<std::int64_t> took = mpv.load(file);
    return {made + took[0], made + took[1]};
}

} // namespace

int main()
{
    setlocale(LC_NUMERIC, "C"); // mpv insists
    Mpv mpv;
    return answerLines({
        {"load", [&](const std::string& file) { return mpv.load(file); }},
        {"fresh", loadAnew},
        {"append",
         [&](const std::string& file) {
             mpv.append(file);
             return std::vector<std::int64_t>();
         }},
        {"next", [&](const std::string&) { return mpv.next(); }},
        {"pause",
         [&](const std::string& paused) {
             mpv.pause(paused == "yes");
             return std::vector<std::int64_t>();
         }},
        {"seek", [&](const std::string& seconds) { return std::vector{mpv.seek(seconds)}; }},
        {"stop", [&](const std::string&) { return std::vector{mpv.stop()}; }},
        {"draw",
         [&](const std::string& seconds) {
             const std::int64_t before = mpv.drawn();
             std::this_thread::sleep_for(std::chrono::seconds(std::stoi(seconds)));
             return std::vector{mpv.drawn() - before};
         }},
    });
}
