#pragma once

#include "tests/desktop/support/Songs.h"

#include <string>

namespace testsupport {

// Subtitles that are pictures, written byte by byte: no encoder makes them of text.

/// A red field of 40 x 20 points at 30, 100 on a screen of 320 x 180, as Blu-rays have it, from @p begin to @p end, in whole
/// seconds: a .sup file.
inline std::string bluraySubtitle(unsigned int begin, unsigned int end)
{
    using namespace std::string_literals;
    constexpr std::size_t kClock = 90000; // ticks a second
    constexpr char kPalette = 0x14, kObject = 0x15, kComposition = 0x16, kWindow = 0x17, kEnd = '\x80';
    const auto segment = [](std::size_t seconds, char kind, const std::string& content) {
        return "PG" + bigEndian(seconds * kClock) + bigEndian(0) + kind + bigEndian(content.size(), 2) + content;
    };
    const std::string screen = bigEndian(320, 2) + bigEndian(180, 2) + '\x10';
    const std::string window = bigEndian(30, 2) + bigEndian(100, 2) + bigEndian(40, 2) + bigEndian(20, 2);
    std::string lines;
    for (int line = 0; line < 20; ++line) {
        lines += "\x00\xA8\x01\x00\x00"s; // forty points of colour 1, and the line's end
    }
    const std::string object = bigEndian(40, 2) + bigEndian(20, 2) + lines;
    const std::string shown = bigEndian(1, 2) + '\0' + '\0' + bigEndian(30, 2) + bigEndian(100, 2);
    return segment(begin, kComposition, screen + bigEndian(0, 2) + "\x80\x00\x00\x01"s + shown) +
           segment(begin, kWindow, "\x01\x00"s + window) +
           segment(begin, kPalette, "\x00\x00\x01\x51\xF0\x5A\xFF"s) + // red, in the colours of video, opaque
           segment(begin, kObject, bigEndian(1, 2) + "\x00\xC0"s + bigEndian(object.size(), 3) + object) +
           segment(begin, kEnd, "") + segment(end, kComposition, screen + bigEndian(1, 2) + "\x00\x00\x00\x00"s) +
           segment(end, kWindow, "\x01\x00"s + window) + segment(end, kEnd, "");
}

/// The index file of a VobSub pair, with the picture of vobSubPictures() at 1 second, in English.
inline std::string vobSubIndex()
{
    std::string palette = "palette: 000000, ff0000";
    for (int i = 2; i < 16; ++i) {
        palette += ", ffffff";
    }
    return "# VobSub index file, v7 (do not modify this line!)\nsize: 320x180\n" + palette +
           "\nlangidx: 0\nid: en, index: 0\ntimestamp: 00:00:01:000, filepos: 000000000\n";
}

/// The other file of the pair: a red field of 40 x 20 points at 30, 100, which is shown for a second.
inline std::string vobSubPictures()
{
    using namespace std::string_literals;
    constexpr std::size_t kSector = 2048;
    std::string field;
    for (int line = 0; line < 10; ++line) {
        field += "\x00\x01"s; // colour 1 up to the line's end
    }
    const std::size_t control = 4 + 2 * field.size();
    const std::string colours = "\x03\x00\x10\x04\x00\xF0"s;   // the second of the palette, opaque
    const std::string place = "\x05\x01\xE0\x45\x06\x40\x77"s; // from 30 to 69, from 100 to 119
    const std::string fields = '\x06' + bigEndian(4, 2) + bigEndian(4 + field.size(), 2);
    const std::string show = '\x01' + colours + place + fields + '\xFF';
    const std::string hide = bigEndian(88, 2) + bigEndian(control + 4 + show.size(), 2) + "\x02\xFF"; // after a second
    const std::string commands = bigEndian(0, 2) + bigEndian(control + 4 + show.size(), 2) + show + hide;
    const std::string unit = bigEndian(control + commands.size(), 2) + bigEndian(control, 2) + field + field + commands;
    // A pack, and in it a packet of the first private stream with its time, 1 second.
    const std::string pack = "\x00\x00\x01\xBA\x44\x00\x04\x00\x04\x01\x01\x89\xC3\xF8"s;
    const std::string time = "\x21\x00\x05\xBF\x21"s;
    const std::string content = "\x81\x80\x05"s + time + "\x20"s + unit;
    std::string sector = pack + "\x00\x00\x01\xBD"s + bigEndian(content.size(), 2) + content;
    const std::size_t rest = kSector - sector.size() - 6;
    return sector + "\x00\x00\x01\xBE"s + bigEndian(rest, 2) + std::string(rest, '\xFF');
}

} // namespace testsupport
