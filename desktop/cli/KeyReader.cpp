#include "desktop/cli/KeyReader.h"

#include <algorithm>

namespace desktop {

namespace {

constexpr char kEscape = '\x1b';

/// The key whose bytes @p bytes begin with.
struct FirstKey {
    std::string name;       ///< empty: none that has a name
    std::size_t length = 0; ///< bytes; 0: not all of them have come
};

std::string arrowOf(char letter)
{
    switch (letter) {
    case 'A':
        return "UP";
    case 'B':
        return "DOWN";
    case 'C':
        return "RIGHT";
    case 'D':
        return "LEFT";
    default:
        return "";
    }
}

// "ESC [ parameters letter" or "ESC O letter"; of the arrows those without parameters.
FirstKey sequenceAt(std::string_view bytes)
{
    if (bytes.size() < 2) {
        return {};
    }
    if (bytes[1] != '[' && bytes[1] != 'O') {
        return {"", 1}; // the escape key by itself
    }
    const auto* const last =
        std::find_if(bytes.begin() + 2, bytes.end(), [](char byte) { return byte >= '@' && byte <= '~'; });
    if (last == bytes.end()) {
        return {};
    }
    return {last == bytes.begin() + 2 ? arrowOf(*last) : "", static_cast<std::size_t>(last - bytes.begin()) + 1};
}

FirstKey firstKey(std::string_view bytes)
{
    const char first = bytes.front();
    if (first == kEscape) {
        return sequenceAt(bytes);
    }
    if (first == ' ') {
        return {"SPACE", 1};
    }
    if (first == '\r' || first == '\n') {
        return {"ENTER", 1};
    }
    const bool isShown = first > ' ' && first <= '~';
    return {isShown ? std::string(1, first) : "", 1};
}

} // namespace

std::vector<std::string> KeyReader::add(std::string_view bytes)
{
    m_waiting += bytes;
    std::vector<std::string> keys;
    std::string_view rest = m_waiting;
    while (!rest.empty()) {
        const FirstKey key = firstKey(rest);
        if (key.length == 0) {
            break;
        }
        if (!key.name.empty()) {
            keys.push_back(key.name);
        }
        rest.remove_prefix(key.length);
    }
    m_waiting = std::string(rest);
    return keys;
}

} // namespace desktop
