#include "desktop/player/MpvSettings.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace desktop {

namespace {

struct Setting {
    const char* name;
    const char* value;
};

// Nothing of the user's, nothing beside the medium, nothing that it names, no answer to keys.
constexpr Setting kSettings[] = {
    {"config", "no"},
    {"terminal", "no"},
    {"idle", "yes"},
    {"osc", "no"},
    {"ytdl", "no"},
    {"load-scripts", "no"},
    {"load-stats-overlay", "no"},
    {"load-osd-console", "no"},
    {"load-auto-profiles", "no"},
    {"osd-level", "0"},
    {"input-default-bindings", "no"},
    {"input-media-keys", "no"},
    {"resume-playback", "no"},
    {"save-position-on-quit", "no"},
    {"sub-auto", "no"},
    {"audio-file-auto", "no"},
    {"cover-art-auto", "no"},
    {"autoload-files", "no"},
    {"access-references", "no"},
    {"ordered-chapters", "no"},
    {"load-unsafe-playlists", "no"},
    {"demuxer", "lavf"},                           // no playlists, archives or lists of files
    {"demuxer-lavf-o", "protocol_whitelist=none"}, // nor those that libavformat knows
    {"hwdec", "no"},
    {"video-rotate", "no"}, // the software renderer cannot; a filter does it
    {"keep-open", "yes"},   // the end is told from here
    {"keep-open-pause", "no"},
    {"image-display-duration", "inf"},
    {"sub-codepage", "utf-8"}, // which they have been made
    {"audio-fallback-to-null", "yes"},
    {"audio-client-name", "desktop-tv"},
};

void setUpWindow(const Mpv& mpv)
{
    mpv.setOption("vo", "gpu,x11");
    mpv.setOption("input-vo-keyboard", "yes");
    mpv.setOption("input-cursor", "no");
    mpv.setOption("title", "${?metadata/title:${metadata/title} - }desktop-tv");
    mpv.setOption("stop-screensaver", "yes");
    mpv.setOption("geometry", "75%x75%"); // of the screen's shape, whatever it shows
    mpv.setOption("keepaspect-window", "no");
}

// A filter of quarter turns, for which mpv needs no rotation of its own.
std::string filterOf(PictureTurn turn)
{
    std::string filters = turn.mirrored ? ",hflip" : "";
    filters += turn.degrees == 90 ? ",transpose=clock" : turn.degrees == 270 ? ",transpose=cclock" : "";
    filters += turn.degrees == 180 ? ",hflip,vflip" : "";
    return filters.empty() ? "" : "lavfi=[" + filters.substr(1) + "]";
}

// The shape that mpv is to give the picture before it is turned.
const char* shapeOf(PictureSize size, bool sidesSwap)
{
    switch (size) {
    case PictureSize::FourToThree:
        return sidesSwap ? "3:4" : "4:3";
    case PictureSize::SixteenToNine:
        return sidesSwap ? "9:16" : "16:9";
    default:
        return "-1";
    }
}

void applyPictureSize(const Mpv& mpv, PictureSize size, bool sidesSwap)
{
    mpv.set("video-aspect-override", std::string(shapeOf(size, sidesSwap)));
    mpv.setFlag("keepaspect", size != PictureSize::Stretched);
    mpv.setFlag("video-unscaled", size == PictureSize::Original);
    mpv.set("panscan", size == PictureSize::Zoomed ? 1.0 : 0.0);
}

void applySubtitles(const Mpv& mpv, const PlayerOptions& options)
{
    constexpr double kMilliseconds = 1000;
    const PlayerOptions usual;
    char color[sizeof "#RRGGBB"] = "";
    std::snprintf(color, sizeof color, "#%06X", options.subtitleColor & 0xFFFFFFU);
    const bool isOwn = options.subtitleColor != usual.subtitleColor || options.subtitlePosition != usual.subtitlePosition;
    mpv.setFlag("sub-visibility", options.subtitles);
    mpv.set("sub-scale", options.subtitleScale);
    mpv.set("sub-color", std::string(color));
    mpv.set("sub-pos", std::to_string(options.subtitlePosition));
    mpv.set("sub-delay", options.subtitleDelay / kMilliseconds);
    mpv.set("sub-ass-override", std::string(isOwn ? "force" : "yes")); // else a file's own style counts
}

} // namespace

void setUp(const Mpv& mpv, const PlayerOutput& output)
{
    for (const Setting& setting : kSettings) {
        mpv.setOption(setting.name, setting.value);
    }
    if (!output.sound) {
        mpv.setOption("ao", "null");
        mpv.setOption("audio-pitch-correction", "no"); // which nobody hears
    }
    if (output.window) {
        setUpWindow(mpv);
    } else {
        mpv.setOption("vo", "libmpv");
        mpv.setOption("video-timing-offset", "0");
    }
}

void bindKeys(const Mpv& mpv)
{
    static constexpr const char* kNamed[] = {
        "SPACE", "ENTER", "TAB",  "BS",    "DEL",  "INS",   "HOME", "END",  "PGUP", "PGDWN",  "ESC",     "LEFT",
        "RIGHT", "UP",    "DOWN", "SHARP", "F1",   "F2",    "F3",   "F4",   "F5",   "F6",     "F7",      "F8",
        "F9",    "F10",   "F11",  "F12",   "PLAY", "PAUSE", "STOP", "PREV", "NEXT", "REWIND", "FORWARD", "CLOSE_WIN"};
    const auto bind = [&mpv](const std::string& key) {
        const std::string command =
            "script-message key " + (key == "\"" || key == "\\" ? "\"\\" + key + "\"" : "\"" + key + "\"");
        mpv.command({"keybind", key.c_str(), command.c_str()});
    };
    for (const char* const key : kNamed) {
        bind(key);
    }
    for (char key = '!'; key <= '~'; ++key) {
        bind(std::string(1, key));
    }
}

void applyTurn(const Mpv& mpv, PictureTurn turn)
{
    mpv.set("vf", filterOf(turn));
}

void applyOptions(const Mpv& mpv, const PlayerOptions& options, bool isPhoto, bool sidesSwap)
{
    applyPictureSize(mpv, isPhoto ? PictureSize::Automatic : options.pictureSize, sidesSwap);
    mpv.set("video-zoom", isPhoto ? std::log2(options.zoom) : 0);
    mpv.set("speed", isPhoto ? 1 : options.speed);
    applySubtitles(mpv, options);
}

} // namespace desktop
