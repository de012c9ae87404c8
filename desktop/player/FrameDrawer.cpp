#include "desktop/player/FrameDrawer.h"

#include "desktop/worker/FileSize.h"

#include <sys/mman.h>
#include <sys/stat.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace desktop {

namespace {

constexpr std::size_t kBytesOfPixel = 4;
constexpr std::size_t kMaxOrders = 8;  // more than that nobody waits for
constexpr std::size_t kMaxOutputs = 3; // one is drawn into while others are read

ino_t fileOf(int fd)
{
    struct stat status = {};
    return fstat(fd, &status) == 0 ? status.st_ino : 0;
}

mpv_render_context* makeContext(mpv_handle& mpv)
{
    char software[] = MPV_RENDER_API_TYPE_SW;
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_API_TYPE, software}, {MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context* context = nullptr;
    if (mpv_render_context_create(&context, &mpv, parameters) < 0) {
        throw std::runtime_error("mpv does not draw.");
    }
    return context;
}

} // namespace

std::size_t frameBytes(int width, int height)
{
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * kBytesOfPixel;
}

MappedOutput::MappedOutput(int fd, std::size_t size)
    : m_size(size)
    , m_file(fileOf(fd))
{
    void* const data = fileSize(fd) == static_cast<std::int64_t>(size)
                           ? mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0)
                           : MAP_FAILED;
    if (data == MAP_FAILED) {
        throw std::runtime_error("The picture has no room.");
    }
    m_data = static_cast<std::uint8_t*>(data);
}

MappedOutput::~MappedOutput()
{
    munmap(m_data, m_size);
}

bool MappedOutput::isOf(int fd, std::size_t size) const
{
    return size == m_size && fileOf(fd) == m_file;
}

FrameDrawer::FrameDrawer(mpv_handle& mpv, Drawn drawn)
    : m_drawn(std::move(drawn))
    , m_context(makeContext(mpv))
    , m_thread([this] { work(); })
{
    mpv_render_context_set_update_callback(
        m_context.get(),
        [](void* drawer) {
            auto& self = *static_cast<FrameDrawer*>(drawer);
            const LockGuard lock(self.m_mutex);
            self.m_updated = true;
            self.m_changed.notify_one();
        },
        this);
}

FrameDrawer::~FrameDrawer()
{
    {
        const LockGuard lock(m_mutex);
        m_stopped = true;
        m_changed.notify_one();
    }
    m_thread.join();
}

void FrameDrawer::draw(FrameOrder order)
{
    int refused = 0;
    {
        const LockGuard lock(m_mutex);
        m_orders.push_back(std::move(order));
        m_changed.notify_one();
        if (m_orders.size() > kMaxOrders) {
            refused = m_orders.front().number;
            m_orders.pop_front();
        }
    }
    if (refused != 0) {
        m_drawn(refused, false);
    }
}

void FrameDrawer::forgetOutputs()
{
    const LockGuard lock(m_mutex);
    m_forgets = true;
    m_changed.notify_one();
}

void FrameDrawer::work()
{
    FrameOrder order;
    while (waitForWork(order)) {
        const bool isNew = (mpv_render_context_update(m_context.get()) & MPV_RENDER_UPDATE_FRAME) != 0;
        if (order.number != 0) {
            const bool drawn = drawInto(order);
            order.output = UniqueFd();
            m_drawn(order.number, drawn);
        } else if (isNew) {
            skip();
        }
    }
}

// Whether to go on. @p order has number 0 when there is only something new to see.
bool FrameDrawer::waitForWork(FrameOrder& order)
{
    UniqueLock lock(m_mutex);
    m_changed.wait(lock.native(),
                   [this]() REQUIRES(m_mutex) { return m_stopped || m_updated || m_forgets || !m_orders.empty(); });
    m_updated = false;
    if (std::exchange(m_forgets, false)) {
        m_outputs.clear();
    }
    order = FrameOrder();
    if (!m_orders.empty()) {
        order = std::move(m_orders.front());
        m_orders.pop_front();
    }
    return !m_stopped;
}

void FrameDrawer::skip()
{
    int yes = 1;
    int no = 0;
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_SKIP_RENDERING, &yes},
                                     {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &no},
                                     {MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context_render(m_context.get(), parameters);
}

bool FrameDrawer::drawInto(const FrameOrder& order)
try {
    const MappedOutput& output = outputOf(order);
    int size[] = {order.width, order.height};
    std::size_t pitch = static_cast<std::size_t>(order.width) * kBytesOfPixel;
    char format[] = "rgb0";
    int no = 0;
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_SW_SIZE, size},
                                     {MPV_RENDER_PARAM_SW_FORMAT, format},
                                     {MPV_RENDER_PARAM_SW_STRIDE, &pitch},
                                     {MPV_RENDER_PARAM_SW_POINTER, output.data()},
                                     {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &no},
                                     {MPV_RENDER_PARAM_INVALID, nullptr}};
    return mpv_render_context_render(m_context.get(), parameters) >= 0;
} catch (const std::exception&) {
    return false;
}

// Mapped anew each time, the kernel would take longer for it than the drawing does.
const MappedOutput& FrameDrawer::outputOf(const FrameOrder& order)
{
    const std::size_t size = frameBytes(order.width, order.height);
    const auto found = std::find_if(m_outputs.begin(), m_outputs.end(),
                                    [&](const auto& output) { return output->isOf(order.output.get(), size); });
    if (found != m_outputs.end()) {
        return **found;
    }
    std::erase_if(m_outputs, [size](const auto& output) { return output->size() != size; });
    if (m_outputs.size() == kMaxOutputs) {
        m_outputs.pop_front();
    }
    return *m_outputs.emplace_back(std::make_unique<MappedOutput>(order.output.get(), size));
}

} // namespace desktop
