#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace desktop {

/// Tells the keys apart that a terminal sends as bytes.
class KeyReader {
public:
    /// The keys that @p bytes, which follow the ones before, are of: "a" and other characters as they are, "SPACE", "ENTER",
    /// "LEFT", "RIGHT", "UP" and "DOWN" as mpv names them. Keys without such a name are left out; one whose bytes have not
    /// all come waits for the rest.
    std::vector<std::string> add(std::string_view bytes);

private:
    std::string m_waiting;
};

} // namespace desktop
