#include "fuzz/EventParameter.h"

#include "fuzz/PlatformAnswers.h"
#include "support/TypedJson.h"

EventParameter::EventParameter(int event, const Json::Value& json)
    : m_event(event)
    , m_json(json)
    , m_before(testsupport::typed(json))
    , m_files(filesOf(json))
    , m_text(textIn(json, "path"))
    , m_secondText(textIn(json, "filepath"))
    , m_number(static_cast<std::uint32_t>(numberIn(json, "index")))
{
    if (json.isNull()) {
        return;
    }
    switch (event) {
    case SOCMW_MM_EVENT_FB_CHANGE_DIR_COMPLETED:
        m_data = &m_files;
        break;
    case SOCMW_MM_EVENT_GROUP_COMPLETED:
        for (const FolderFileInfo_s& file : m_files) {
            m_texts.push_back(file.name);
        }
        m_data = &m_texts;
        break;
    case SOCMW_MM_EVENT_THUMBNAIL_DATA_READY:
    case SOCMW_MM_EVENT_THUMBNAIL_DATA_READY_SECOND: {
        const std::int32_t ok = numberIn(json, "ok");
        // A picture always comes with its paths; without one they may be missing.
        const bool hasPaths = ok != 0 || !m_text.empty();
        m_thumbnail = {numberIn(json, "index"), ok, hasPaths ? m_text.c_str() : nullptr,
                       hasPaths ? m_secondText.c_str() : nullptr};
        m_data = &m_thumbnail;
        break;
    }
    case SOCMW_MM_EVENT_PLAYING_STATE:
    case SOCMW_MM_EVENT_PLAYING_STATE_SECOND:
        m_playState = {numberIn(json, "index"), numberIn(json, "ok") != 0};
        m_data = &m_playState;
        break;
    case SOCMW_MM_EVENT_MUSIC_STOP_SUCCESS_STATE:
        m_musicStop = {numberIn(json, "index"), m_text};
        m_data = &m_musicStop;
        break;
    case SOCMW_MM_EVENT_PHOTO_INFO_UPDATE:
        m_data = &m_text;
        break;
    case SOCMW_MM_PHOTO_EVENT_PLAY_END_STATE:
    case SOCMW_MM_EVENT_PLAYING_CUT_TIME:
    case SOCMW_DLNA_EVENT_DMR_PLAY:
    case SOCMW_DLNA_EVENT_DMR_ADJUSTVOLUME:
        m_data = &m_number;
        break;
    case SOCMW_MM_EVENT_SUBTITLE_CHANGE:
        fillSubtitle(json);
        m_data = &m_subtitle;
        break;
    case SOCMW_DLNA_EVENT_DMR_SEEK:
        m_seek = {numberIn(json, "index"), numberIn(json, "ok")};
        m_data = &m_seek;
        break;
    default: // a JSON object, or a pointer that is not looked at
        m_data = &m_json;
    }
}

void EventParameter::fillSubtitle(const Json::Value& json)
{
    m_subtitle.type = numberIn(json, "type");
    m_subtitle.text = m_text;
    m_subtitle.image.size = m_subtitle.image.width = m_number;
    m_subtitle.image.format = numberIn(json, "ok");
    m_subtitle.image.picture = m_secondText.empty() ? nullptr : m_secondText.data();
}

bool EventParameter::isDefined() const
{
    return m_event != SOCMW_MM_EVENT_FILTER_DATA_READY_UPDATE || m_data != nullptr;
}

bool EventParameter::isUntouched() const
{
    const bool pictureTaken = m_event == SOCMW_MM_EVENT_SUBTITLE_CHANGE && m_subtitle.type != 0;
    return testsupport::typed(m_json) == m_before && (!pictureTaken || m_subtitle.image.picture == nullptr);
}
