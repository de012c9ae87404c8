#include "desktop/playback/PlayEvents.h"

#include "platform/SocMwEvents.h"

#include <glib.h>

#include <algorithm>
#include <cmath>

namespace desktop {

namespace {

constexpr int kText = 0;
constexpr int kPicture = 1;
constexpr std::int32_t kPng = 1;

Json::UInt wholeSeconds(double seconds)
{
    return seconds > 0 ? static_cast<Json::UInt>(std::min(seconds, 4294967295.0)) : 0;
}

Json::Value placeOf(const PlayingItem& item)
{
    Json::Value body;
    body["index"] = item.index;
    body["path"] = item.entry.path;
    return body;
}

Json::Value infoOf(const PlayingItem& item, const MediaFacts& facts)
{
    Json::Value body = placeOf(item);
    body["title"] = titleOf(item, facts);
    body["artist"] = facts.artist;
    body["album"] = facts.album;
    body["duration"] = wholeSeconds(std::round(facts.duration));
    return body;
}

std::string base64(const std::string& bytes)
{
    const std::unique_ptr<gchar, decltype(&g_free)> text(
        g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size()), &g_free);
    return text.get();
}

/// A subtitle's picture, together with the buffer that the record points to.
struct OwnedPicture {
    subtitle_info_s record;
    std::string text;
};

} // namespace

std::string titleOf(const PlayingItem& item, const MediaFacts& facts)
{
    return facts.title.empty() ? item.entry.title : facts.title;
}

void PlayEvents::loaded(const PlayingItem& item, const MediaFacts& facts) const
{
    const bool isPhoto = item.kind == FILE_TYPE_PHOTO;
    const Json::Value info = infoOf(item, facts);
    Json::Value body = placeOf(item);
    body["type"] = item.kind;
    body["title"] = info["title"];
    body["duration"] = info["duration"];
    post(isPhoto ? SOCMW_MM_EVENT_PHOTO_LOAD_SUCCESS : SOCMW_MM_EVENT_MEDIA_LOAD_SUCCESS, std::move(body));
    if (isPhoto) {
        m_events.post(SOCMW_MM_EVENT_PHOTO_INFO_UPDATE, std::make_shared<std::string>(titleOf(item, facts)));
    } else {
        post(item.second ? SOCMW_MM_EVENT_MOVIE_INFO_UPDATE_SECOND : SOCMW_MM_EVENT_MOVIE_INFO_UPDATE, info);
    }
}

void PlayEvents::loadFailed(const PlayingItem& item, const std::string& reason) const
{
    Json::Value body = placeOf(item);
    body["type"] = item.kind;
    body["reason"] = reason;
    post(item.second ? SOCMW_MM_EVENT_MEDIA_LOAD_FAILED_SECOND : SOCMW_MM_EVENT_MEDIA_LOAD_FAILED, std::move(body));
}

void PlayEvents::speed(const PlayingItem& item, int speed, bool hdr) const
{
    m_events.post(item.second ? SOCMW_MM_EVENT_PLAYING_STATE_SECOND : SOCMW_MM_EVENT_PLAYING_STATE,
                  std::make_shared<play_state_s>(play_state_s{speed, hdr}));
}

void PlayEvents::audioUnsupported(const PlayingItem& item, const std::string& codec) const
{
    Json::Value body;
    body["path"] = item.entry.path;
    body["codec"] = codec;
    post(SOCMW_MM_EVENT_AUDIO_NOT_SUPPORT_STATE, std::move(body));
}

void PlayEvents::videoUnsupported() const
{
    m_events.post(SOCMW_MM_EVENT_VIDEO_NOT_SUPPORT_STATE);
}

void PlayEvents::progress(std::uint32_t seconds) const
{
    m_events.post(SOCMW_MM_EVENT_PLAYING_CUT_TIME, std::make_shared<std::uint32_t>(seconds));
}

void PlayEvents::subtitle(const PlayerSubtitleText& subtitle) const
{
    const auto record = std::make_shared<subtitle_info_s>();
    record->type = kText;
    record->text = subtitle.text;
    m_events.post(SOCMW_MM_EVENT_SUBTITLE_CHANGE, record);
}

// One that goes is told as a text subtitle without text: a picture without a picture is not published.
void PlayEvents::subtitle(const PlayerSubtitlePicture& subtitle) const
{
    if (subtitle.png.empty()) {
        this->subtitle(PlayerSubtitleText{});
        return;
    }
    const auto owned = std::make_shared<OwnedPicture>();
    owned->text = base64(subtitle.png);
    owned->record.type = kPicture;
    subtitle_image_s& image = owned->record.image;
    image.startH = static_cast<std::uint32_t>(subtitle.x);
    image.startV = static_cast<std::uint32_t>(subtitle.y);
    image.width = static_cast<std::uint32_t>(subtitle.width);
    image.height = static_cast<std::uint32_t>(subtitle.height);
    image.size = static_cast<std::uint32_t>(owned->text.size());
    image.format = kPng;
    image.picture = owned->text.data();
    m_events.post(SOCMW_MM_EVENT_SUBTITLE_CHANGE, std::shared_ptr<subtitle_info_s>(owned, &owned->record));
}

void PlayEvents::failed(const PlayingItem& item) const
{
    m_events.post(item.second ? SOCMW_MM_EVENT_PLAY_FAILED_SECOND : SOCMW_MM_EVENT_PLAY_FAILED);
}

void PlayEvents::ended(const PlayingItem& item) const
{
    if (item.kind == FILE_TYPE_PHOTO) {
        m_events.post(SOCMW_MM_PHOTO_EVENT_PLAY_END_STATE, std::make_shared<std::uint32_t>(item.index));
    } else {
        m_events.post(SOCMW_MM_EVENT_PLAY_END_STATE);
    }
}

void PlayEvents::stopped(const PlayingItem& item) const
{
    switch (item.kind) {
    case FILE_TYPE_VIDEO:
        return post(SOCMW_MM_EVENT_MOVIE_STOP_SUCCESS_STATE, placeOf(item));
    case FILE_TYPE_MUSIC:
        return m_events.post(
            SOCMW_MM_EVENT_MUSIC_STOP_SUCCESS_STATE,
            std::make_shared<music_stop_info_s>(music_stop_info_s{static_cast<std::int32_t>(item.index), item.entry.path}));
    default:
        return post(SOCMW_MM_PHOTO_EVENT_STOP_SUCCESS_STATE, placeOf(item));
    }
}

void PlayEvents::post(int id, Json::Value body) const
{
    m_events.post(id, std::make_shared<Json::Value>(std::move(body)));
}

} // namespace desktop
