#include "desktop/player/WindowPicture.h"

#include "desktop/worker/PictureSource.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <string_view>

namespace desktop {

namespace {

/// What mpv has taken from its window; empty when it has not.
class Screenshot {
public:
    explicit Screenshot(const Mpv& mpv)
    {
        // Without OpenGL there is none of the window, but one of the picture with its subtitles.
        for (const char* const part : {"window", "subtitles"}) {
            const char* words[] = {"screenshot-raw", part, nullptr};
            m_taken = m_taken || mpv_command_ret(&mpv.handle(), words, &m_node) >= 0;
        }
    }
    ~Screenshot()
    {
        if (m_taken) {
            mpv_free_node_contents(&m_node);
        }
    }
    Screenshot(const Screenshot&) = delete;
    Screenshot& operator=(const Screenshot&) = delete;

    int width() const { return number("w"); }
    int height() const { return number("h"); }
    int pitch() const { return number("stride"); }
    const std::uint8_t* pixels() const
    {
        const mpv_node* const data = find("data", MPV_FORMAT_BYTE_ARRAY);
        const std::size_t size = data != nullptr ? data->u.ba->size : 0;
        const bool whole = size > 0 && size >= static_cast<std::size_t>(pitch()) * static_cast<std::size_t>(height());
        return whole ? static_cast<const std::uint8_t*>(data->u.ba->data) : nullptr;
    }

private:
    int number(const char* key) const
    {
        const mpv_node* const value = find(key, MPV_FORMAT_INT64);
        return value != nullptr ? static_cast<int>(value->u.int64) : 0;
    }
    const mpv_node* find(std::string_view key, mpv_format format) const
    {
        const bool isMap = m_taken && m_node.format == MPV_FORMAT_NODE_MAP;
        for (int i = 0; isMap && i < m_node.u.list->num; ++i) {
            if (key == m_node.u.list->keys[i] && m_node.u.list->values[i].format == format) {
                return &m_node.u.list->values[i];
            }
        }
        return nullptr;
    }

    mpv_node m_node = {};
    bool m_taken = false;
};

PixelSize fitted(PixelSize picture, PixelSize into)
{
    const double scale = std::min(1.0 * into.width / picture.width, 1.0 * into.height / picture.height);
    return {std::clamp(static_cast<int>(picture.width * scale), 1, into.width),
            std::clamp(static_cast<int>(picture.height * scale), 1, into.height)};
}

} // namespace

bool drawWindow(const Mpv& mpv, const FrameOrder& order)
try {
    constexpr int kBytes = 4;
    const Screenshot shot(mpv);
    if (shot.pixels() == nullptr || shot.width() <= 0 || shot.height() <= 0) {
        return false;
    }
    const MappedOutput output(order.output.get(), frameBytes(order.width, order.height));
    std::memset(output.data(), 0, frameBytes(order.width, order.height));
    const PixelSize size = fitted({shot.width(), shot.height()}, {order.width, order.height});
    const ScalerPointer scaler(sws_getContext(shot.width(), shot.height(), AV_PIX_FMT_BGR0, size.width, size.height,
                                              AV_PIX_FMT_RGB0, SWS_BILINEAR, nullptr, nullptr, nullptr));
    if (scaler == nullptr) {
        return false;
    }
    const std::uint8_t* const from[] = {shot.pixels()};
    const int fromPitches[] = {shot.pitch()};
    const std::ptrdiff_t left = (order.width - size.width) / 2;
    const std::ptrdiff_t top = (order.height - size.height) / 2;
    std::uint8_t* const to[] = {output.data() + (top * order.width + left) * kBytes};
    const int toPitches[] = {order.width * kBytes};
    sws_scale(scaler.get(), from, fromPitches, 0, shot.height(), to, toPitches);
    return true;
} catch (const std::exception&) {
    return false;
}

} // namespace desktop
