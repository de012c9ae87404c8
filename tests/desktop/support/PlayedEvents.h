#pragma once

#include "desktop/jobs/EventQueue.h"

#include "platform/SocMwEvents.h"

#include "tests/desktop/support/Waiting.h"

#include <json/json.h>

#include <string>
#include <vector>

namespace testsupport {

/// The events of playback as texts: the id and what is published of its record, such as "13 speed 2, no hdr".
class PlayedEvents {
public:
    explicit PlayedEvents(desktop::EventQueue& events)
        : m_events(events)
    {
        s_gathered = &m_gathered;
        m_events.setListener(&gather);
        m_events.start();
    }
    ~PlayedEvents()
    {
        m_events.stop();
        m_events.setListener(nullptr);
    }
    PlayedEvents(const PlayedEvents&) = delete;
    PlayedEvents& operator=(const PlayedEvents&) = delete;

    /// The next @p count events, or those that have come at the deadline.
    std::vector<std::string> next(std::size_t count)
    {
        const std::vector<std::string> all = m_gathered.waitFor(m_taken + count);
        const auto first = all.begin() + static_cast<std::ptrdiff_t>(m_taken);
        std::vector<std::string> taken(first, std::min(first + static_cast<std::ptrdiff_t>(count), all.end()));
        m_taken += taken.size();
        return taken;
    }
    /// Whether none has come besides those that have been taken, once those that are due have been delivered.
    bool none()
    {
        m_events.stop();
        m_events.start();
        return m_gathered.sofar().size() == m_taken;
    }

private:
    static std::string compact(const Json::Value& body)
    {
        Json::StreamWriterBuilder builder;
        builder["indentation"] = "";
        return Json::writeString(builder, body);
    }

    static std::string text(int id, void* data)
    {
        switch (id) {
        case SOCMW_MM_EVENT_PLAYING_STATE:
        case SOCMW_MM_EVENT_PLAYING_STATE_SECOND: {
            const auto* const state = static_cast<play_state_s*>(data);
            return "speed " + std::to_string(state->speed) + (state->hdr ? ", hdr" : ", no hdr");
        }
        case SOCMW_MM_EVENT_MUSIC_STOP_SUCCESS_STATE: {
            const auto* const stop = static_cast<music_stop_info_s*>(data);
            return std::to_string(stop->curIdx) + " " + stop->path;
        }
        case SOCMW_MM_EVENT_PHOTO_INFO_UPDATE:
            return *static_cast<std::string*>(data);
        case SOCMW_MM_PHOTO_EVENT_PLAY_END_STATE:
        case SOCMW_MM_EVENT_PLAYING_CUT_TIME:
            return std::to_string(*static_cast<std::uint32_t*>(data));
        case SOCMW_MM_EVENT_SUBTITLE_CHANGE:
            return subtitle(*static_cast<subtitle_info_s*>(data));
        default:
            return data != nullptr ? compact(*static_cast<Json::Value*>(data)) : "";
        }
    }

    static std::string subtitle(const subtitle_info_s& info)
    {
        const subtitle_image_s& image = info.image;
        if (info.type == 0) {
            return "text " + info.text;
        }
        return "picture " + std::to_string(info.type) + " at " + std::to_string(image.startH) + "," +
               std::to_string(image.startV) + " of " + std::to_string(image.width) + "x" + std::to_string(image.height) +
               " format " + std::to_string(image.format) + " size " + std::to_string(image.size) + " " + image.picture;
    }

    static void gather(int id, void* data)
    {
        const std::string what = text(id, data);
        s_gathered->add(std::to_string(id) + (what.empty() ? "" : " " + what));
    }

    inline static Gathered<std::string>* s_gathered = nullptr;
    desktop::EventQueue& m_events;
    Gathered<std::string> m_gathered;
    std::size_t m_taken = 0;
};

} // namespace testsupport
