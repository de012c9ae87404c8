#pragma once

#include "desktop/jobs/EventQueue.h"
#include "desktop/workers/MediaPlayer.h"

#include <json/json.h>

#include <cstdint>
#include <string>

namespace desktop {

/// What plays, as its events name it.
struct PlayingItem {
    FileType kind = FILE_TYPE_UNKNOWN; ///< photo, video or music
    bool second = false;               ///< started by the second browser, whose events have ids of their own
    std::uint32_t index = 0;           ///< in its list
    FolderFileInfo_s entry{};
};

/// Raises the events of playback. Safe on any thread.
class PlayEvents {
public:
    /// @p events must outlive this object.
    explicit PlayEvents(EventQueue& events)
        : m_events(events)
    {
    }

    /// @p item plays: it has been loaded, its title, and for video and music what is known of it.
    void loaded(const PlayingItem& item, const MediaFacts& facts) const;
    void loadFailed(const PlayingItem& item, const std::string& reason) const;
    /// @p speed: 1 as usual, 0 paused, negative backwards.
    void speed(const PlayingItem& item, int speed, bool hdr) const;
    void audioUnsupported(const PlayingItem& item, const std::string& codec) const;
    void videoUnsupported() const;
    void progress(std::uint32_t seconds) const;
    void subtitle(const PlayerSubtitleText& subtitle) const;
    void subtitle(const PlayerSubtitlePicture& subtitle) const;
    /// Playing was lost in the middle of @p item.
    void failed(const PlayingItem& item) const;
    /// The run whose last was @p item has come to its end.
    void ended(const PlayingItem& item) const;
    /// @p item has been stopped.
    void stopped(const PlayingItem& item) const;

private:
    void post(int id, Json::Value body) const;

    EventQueue& m_events;
};

/// The title of @p item: by its own tags, else its name without extension.
std::string titleOf(const PlayingItem& item, const MediaFacts& facts);

} // namespace desktop
