#pragma once

#include <cstdint>
#include <string>

namespace testsupport {

// Music files in memory, written byte by byte: what programs for making them would write otherwise or not at all.

/// About a second of MP3 frames of 128 kbit/s.
inline std::string silentMp3()
{
    using namespace std::string_literals;
    std::string frames;
    for (int i = 0; i < 40; ++i) {
        frames += "\xFF\xFB\x90\x64"s + std::string(413, '\0');
    }
    return frames;
}

/// @p number in @p size bytes.
inline std::string bigEndian(std::uint64_t number, int size = 4)
{
    std::string bytes;
    for (int i = size - 1; i >= 0; --i) {
        bytes += static_cast<char>(number >> 8 * i & 0xFF);
    }
    return bytes;
}

inline std::string littleEndian(std::uint64_t number, int size = 4)
{
    const std::string bytes = bigEndian(number, size);
    return {bytes.rbegin(), bytes.rend()};
}

/// An ID3v2.3 frame (of up to 127 bytes: of 2.4 as well) with @p text in ID3's encoding @p encoding.
inline std::string textFrame(const std::string& name, char encoding, const std::string& text)
{
    return name + bigEndian(text.size() + 1) + bigEndian(0, 2) + encoding + text;
}

/// An ID3v2 tag of these frames.
inline std::string id3Tag(const std::string& frames, char version = 3, char flags = 0)
{
    const auto sevenBits = [&frames](int shift) { return static_cast<char>((frames.size() >> shift) & 0x7F); };
    return std::string("ID3") + version + '\0' + flags + sevenBits(21) + sevenBits(14) + sevenBits(7) + sevenBits(0) +
           frames;
}

/// A chunk as RIFF writes it.
inline std::string riffChunk(const std::string& name, const std::string& content)
{
    return name + littleEndian(content.size()) + content + std::string(content.size() % 2, '\0');
}

/// A chunk as AIFF writes it.
inline std::string aiffChunk(const std::string& name, const std::string& content)
{
    return name + bigEndian(content.size()) + content + std::string(content.size() % 2, '\0');
}

constexpr int kWaveRate = 8000; ///< bytes of a second in waveFile() and aiffFile()

/// A WAV file with @p chunks before the sound.
inline std::string waveFile(const std::string& chunks, int seconds, const std::string& behind = "")
{
    const std::string format = littleEndian(1, 2) + littleEndian(1, 2) + littleEndian(kWaveRate) + littleEndian(kWaveRate) +
                               littleEndian(1, 2) + littleEndian(8, 2);
    const std::string sound(static_cast<std::size_t>(kWaveRate * seconds), '\x80');
    return riffChunk("RIFF", "WAVE" + riffChunk("fmt ", format) + chunks + riffChunk("data", sound) + behind);
}

/// An AIFF file with @p chunks before the sound.
inline std::string aiffFile(const std::string& chunks, int seconds)
{
    const auto frames = static_cast<std::size_t>(kWaveRate * seconds);
    const std::string rate = std::string("\x40\x0B\xFA", 3) + std::string(7, '\0'); // 8000 as 80-bit floating point
    const std::string format = bigEndian(1, 2) + bigEndian(frames) + bigEndian(8, 2) + rate;
    return aiffChunk("FORM", "AIFF" + aiffChunk("COMM", format) + chunks +
                                 aiffChunk("SSND", std::string(8, '\0') + std::string(frames, '\0')));
}

/// An APEv2 tag item; several values have a NUL between them.
inline std::string apeItem(const std::string& key, const std::string& value)
{
    return littleEndian(value.size()) + littleEndian(0) + key + '\0' + value;
}

/// An APEv2 tag of @p count @p items, as it stands at a file's end.
inline std::string apeTag(const std::string& items, std::size_t count)
{
    return items + "APETAGEX" + littleEndian(2000) + littleEndian(items.size() + 32) + littleEndian(count) +
           littleEndian(0) + std::string(8, '\0');
}

} // namespace testsupport
