#pragma once

#include "desktop/cli/PlayTarget.h"
#include "desktop/host/HostUpdate.h"

#include <string>

namespace desktop {

/// How far playing is, by the plugin's notifications.
class PlayProgress {
public:
    /// @p target must outlive this object.
    explicit PlayProgress(const PlayTarget& target)
        : m_target(target)
    {
    }

    void take(const Notification& notification);
    /// Whether a medium plays, and path() is its.
    bool isLoaded() const { return m_loaded; }
    /// What plays, or played last.
    const std::string& path() const { return m_path; }
    /// 1 as usual, 0 paused, negative backwards.
    int speed() const { return m_speed; }

    /// Whether what plays is known to be no longer than @p seconds.
    bool endsBefore(double seconds) const { return m_duration > 0 && seconds >= m_duration; }

    /// What is to be shown in one line, safe for a terminal: title, state, time, place and, if @p withSubtitle, subtitle.
    std::string line(bool withSubtitle) const;
    /// That the medium plays, as a line of a report, safe for a terminal.
    std::string report() const;

private:
    void takeLoaded(const Json::Value& body);
    void takeInfo(const Json::Value& body);
    void takeSubtitle(const Json::Value& body);
    std::string state() const;
    std::string times() const;

    const PlayTarget& m_target;
    bool m_loaded = false;
    std::string m_path;
    std::string m_title;
    std::string m_subtitle;
    unsigned int m_index = 0;    ///< in the list
    unsigned int m_duration = 0; ///< seconds; 0: not known
    unsigned int m_seconds = 0;
    int m_speed = 1;
};

} // namespace desktop
