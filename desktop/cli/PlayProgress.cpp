#include "desktop/cli/PlayProgress.h"

#include "desktop/cli/TextColumns.h"

#include <algorithm>
#include <cstdlib>

namespace desktop {

namespace {

constexpr std::size_t kTitleColumns = 40; // so that the rest of the line is seen, too

std::string clockTime(unsigned int seconds)
{
    return seconds == 0 ? "0:00" : humanDuration(seconds);
}

std::string oneLine(std::string text)
{
    for (std::size_t end; (end = text.find('\n')) != std::string::npos;) {
        text.replace(end, 1, " / ");
    }
    return text;
}

} // namespace

void PlayProgress::take(const Notification& notification)
{
    const std::string& name = notification.name;
    const Json::Value& body = notification.body;
    if (name == "storagemedia.media.loadsuccess" || name == "storagemedia.media.photo.loadsuccess") {
        takeLoaded(body);
    } else if (name == "storagemedia.media.infoupdate") {
        takeInfo(body);
    } else if (name == "storagemedia.media.process") {
        m_seconds = body["time"].asUInt();
    } else if (name == "storagemedia.media.curplayspeed") {
        m_speed = body["speed"].asInt();
    } else if (name == "storagemedia.media.titleinfo") {
        takeSubtitle(body);
    }
}

std::string PlayProgress::line(bool withSubtitle) const
{
    std::string text = truncated(visibleText(m_title), kTitleColumns);
    for (const std::string& part :
         {state(), times(), m_target.placeOf(m_index), withSubtitle ? visibleText(m_subtitle) : ""}) {
        text += part.empty() ? "" : "  " + part;
    }
    return text;
}

std::string PlayProgress::report() const
{
    const std::string duration = m_duration > 0 ? " (" + humanDuration(m_duration) + ")" : "";
    return m_target.placeOf(m_index) + ": " + visibleText(m_path) + duration + "\n";
}

void PlayProgress::takeLoaded(const Json::Value& body)
{
    m_loaded = true;
    m_path = body["path"].asString();
    m_title = body["title"].asString();
    m_index = body["index"].asUInt();
    m_duration = body["duration"].asUInt();
    m_seconds = 0;
    m_speed = 1;
    m_subtitle.clear();
}

// Who plays the music is known only now.
void PlayProgress::takeInfo(const Json::Value& body)
{
    const std::string artist = body["artist"].asString();
    m_title = (artist.empty() ? "" : artist + " - ") + body["title"].asString();
    m_duration = body["duration"].asUInt();
}

// A text that is empty, or a picture, takes the place of the text before.
void PlayProgress::takeSubtitle(const Json::Value& body)
{
    m_subtitle = body["type"].asInt() == 0 ? oneLine(body["strtitle"].asString()) : "[picture]";
}

std::string PlayProgress::state() const
{
    if (m_speed == 0) {
        return "paused";
    }
    return m_speed == 1 ? "playing" : "x" + std::to_string(m_speed);
}

std::string PlayProgress::times() const
{
    if (m_target.kind == FILE_TYPE_PHOTO) {
        return "";
    }
    return clockTime(m_seconds) + " / " + (m_duration > 0 ? clockTime(m_duration) : "?");
}

} // namespace desktop
