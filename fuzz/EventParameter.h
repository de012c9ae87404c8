#pragma once

#include "platform/SocMwEvents.h"
#include "platform/SocMwTypes.h"

#include <json/json.h>

#include <string>
#include <vector>

/// What an event's pointer points to, made of JSON: every record has the fields of its own names, and null gives none.
class EventParameter {
public:
    EventParameter(int event, const Json::Value& json);

    /// Whether the middleware may send this: event 6 always has a parameter.
    bool isDefined() const;
    /// Whether the event is published, if at all, by functions that tolerate a missing callback.
    bool isForMountNotifications() const { return m_event >= 0 && m_event <= SOCMW_MM_EVENT_DEVICE_LIST_UPDATE; }
    /// The pointer to hand to the listener.
    void* data() { return m_data; }
    /// Whether the listener has left the record alone, but for a picture, which it must have taken.
    bool isUntouched() const;

private:
    void fillSubtitle(const Json::Value& json);

    int m_event;
    void* m_data = nullptr;
    Json::Value m_json;
    std::string m_before; ///< the JSON value as it was
    std::vector<FolderFileInfo_s> m_files;
    std::vector<std::string> m_texts;
    std::string m_text;
    std::string m_secondText;
    std::uint32_t m_number = 0;
    thumbnail_ready_s m_thumbnail;
    play_state_s m_playState;
    music_stop_info_s m_musicStop;
    subtitle_info_s m_subtitle;
    dmr_seek_s m_seek;
};
