#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/base/UniqueFd.h"

#include <mpv/client.h>
#include <mpv/render.h>

#include <sys/types.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <thread>

namespace desktop {

/// A picture that is to be drawn.
struct FrameOrder {
    int number = 0;
    int width = 0;   ///< pixels
    int height = 0;  ///< pixels
    UniqueFd output; ///< a file in memory, of width * height * 4 bytes
};

/// Bytes of a picture's pixels.
std::size_t frameBytes(int width, int height);

/// The memory of a file in memory, for as long as the object lives.
class MappedOutput {
public:
    /// Throws std::runtime_error when @p fd is not @p size bytes large.
    MappedOutput(int fd, std::size_t size);
    ~MappedOutput();
    MappedOutput(const MappedOutput&) = delete;
    MappedOutput& operator=(const MappedOutput&) = delete;

    /// Whether it is the memory of @p fd, which may be another descriptor of the same file.
    bool isOf(int fd, std::size_t size) const;
    std::uint8_t* data() const { return m_data; }
    std::size_t size() const { return m_size; }

private:
    std::uint8_t* m_data;
    std::size_t m_size;
    ino_t m_file; ///< which no other file in memory has, as long as this one is mapped
};

/// Draws what mpv shows, when it is asked to, and lets the pictures pass by otherwise: mpv waits for each to be taken.
class FrameDrawer {
public:
    /// Is told on the drawer's thread: the picture's number, and whether it has been drawn.
    using Drawn = std::function<void(int number, bool drawn)>;

    /// @p mpv must outlive the drawer. Throws std::runtime_error.
    FrameDrawer(mpv_handle& mpv, Drawn drawn);
    ~FrameDrawer();
    FrameDrawer(const FrameDrawer&) = delete;
    FrameDrawer& operator=(const FrameDrawer&) = delete;

    void draw(FrameOrder order);
    /// Lets go of the memories that pictures have been drawn into, which are kept for those that follow.
    void forgetOutputs();

private:
    struct Free {
        void operator()(mpv_render_context* context) const { mpv_render_context_free(context); }
    };

    void work();
    bool waitForWork(FrameOrder& order);
    void skip();
    bool drawInto(const FrameOrder& order);
    const MappedOutput& outputOf(const FrameOrder& order);

    const Drawn m_drawn;
    std::unique_ptr<mpv_render_context, Free> m_context;
    Mutex m_mutex;
    std::condition_variable m_changed;
    bool m_stopped GUARDED_BY(m_mutex) = false;
    bool m_updated GUARDED_BY(m_mutex) = false;
    bool m_forgets GUARDED_BY(m_mutex) = false;
    std::deque<FrameOrder> m_orders GUARDED_BY(m_mutex);
    std::deque<std::unique_ptr<MappedOutput>> m_outputs; ///< the thread's
    std::thread m_thread;
};

} // namespace desktop
