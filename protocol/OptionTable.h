#pragma once

// Made from protocol/storagemedia.json by tools/protocol: change it there.

#include <array>
#include <cstddef>

namespace protocol {

/// One of the values of a playback option.
struct OptionChoice {
    int value; ///< 0, 1, 2 ...
    const char* name;
    int means; ///< in the option's unit; 0 when it has none
};

/// Some of the choices in a row, for a range-based for.
struct OptionChoices {
    const OptionChoice* first;
    std::size_t count;
    const OptionChoice* begin() const { return first; }
    const OptionChoice* end() const { return first + count; }
};

enum class OptionKind {
    Track,  ///< the number of a track of the medium that plays, or 0
    Choice, ///< one of some values
    Range,  ///< any value within bounds
};

/// A playback option, as "storagemedia.option.set" names it.
struct OptionDescription {
    const char* option;
    const char* suboption;
    OptionKind kind;
    int initial;
    int minimum;           ///< of a choice or a range
    int maximum;           ///< likewise
    OptionChoices choices; ///< none unless it is a choice
    const char* unit;      ///< "ms", "s", "percent" or "rgb" (0xRRGGBB); empty: none
    bool isOfMedium;       ///< refused while no medium plays that it is for, and forgotten with it
    const char* meaning;
};

// clang-format off

inline constexpr std::array<OptionChoice, 35> kOptionChoices = {{
    {0, "small", 75},
    {1, "medium", 100},
    {2, "large", 150},
    {3, "very large", 200},
    {0, "white", 16777215},
    {1, "yellow", 16776960},
    {2, "green", 65280},
    {3, "cyan", 65535},
    {4, "red", 16711680},
    {5, "magenta", 16711935},
    {6, "blue", 255},
    {0, "automatic", 0},
    {1, "UTF-8", 0},
    {2, "windows-1252", 0},
    {3, "windows-1250", 0},
    {4, "windows-1251", 0},
    {5, "windows-1253", 0},
    {6, "windows-1254", 0},
    {7, "windows-1255", 0},
    {8, "windows-1256", 0},
    {9, "windows-1257", 0},
    {10, "windows-1258", 0},
    {11, "windows-874", 0},
    {12, "KOI8-R", 0},
    {13, "Shift_JIS", 0},
    {14, "EUC-JP", 0},
    {15, "GB18030", 0},
    {16, "Big5", 0},
    {17, "EUC-KR", 0},
    {0, "automatic", 0},
    {1, "4:3", 0},
    {2, "16:9", 0},
    {3, "stretched", 0},
    {4, "original", 0},
    {5, "zoomed", 0},
}};

/// Every playback option.
inline constexpr std::array<OptionDescription, 11> kOptions = {{
    {"audio", "track", OptionKind::Track, 0, 0, 0, {nullptr, 0}, "", true, "the track of sound that plays, by its number; 0: the file's own choice"},
    {"subtitle", "track", OptionKind::Track, 0, 0, 0, {nullptr, 0}, "", true, "the subtitle track that is chosen, by its number; 0: the file's own choice"},
    {"subtitle", "size", OptionKind::Choice, 1, 0, 3, {&kOptionChoices[0], 4}, "percent", false, "the size of the letters"},
    {"subtitle", "color", OptionKind::Choice, 0, 0, 6, {&kOptionChoices[4], 7}, "rgb", false, "the colour of the letters"},
    {"subtitle", "position", OptionKind::Range, 100, 0, 100, {nullptr, 0}, "percent", false, "of the picture's height: where the lower edge of the text is"},
    {"subtitle", "delay", OptionKind::Range, 0, -60000, 60000, {nullptr, 0}, "ms", true, "how much later they are shown; negative: sooner"},
    {"subtitle", "charset", OptionKind::Choice, 0, 0, 17, {&kOptionChoices[11], 18}, "", false, "the character set of subtitle files beside the video"},
    {"photo", "interval", OptionKind::Range, 5, 1, 3600, {nullptr, 0}, "s", false, "how long the slide show shows a photo"},
    {"photo", "zoom", OptionKind::Range, 100, 100, 800, {nullptr, 0}, "percent", true, "how much larger than the screen the photo is shown"},
    {"playback", "speed", OptionKind::Range, 100, 50, 200, {nullptr, 0}, "percent", false, "the speed at which video and music play"},
    {"video", "picsize", OptionKind::Choice, 0, 0, 5, {&kOptionChoices[29], 6}, "", false, "how the picture fills the screen; \"storagemedia.video.pic.set\" sets the same"},
}};

// clang-format on

} // namespace protocol
