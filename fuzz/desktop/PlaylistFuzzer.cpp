#include "desktop/formats/PlaylistFormats.h"
#include "desktop/text/Utf8.h"
#include "desktop/workers/PlaylistTransfer.h"

#include "fuzz/desktop/Fuzzing.h"

#include <algorithm>
#include <climits>

using namespace desktop;

namespace {

// A text that is longer than any path is left empty on the way.
bool hasArrived(const std::string& arrived, const std::string& sent)
{
    return sent.size() <= PATH_MAX ? arrived == sent : arrived.empty();
}

bool entryHasArrived(const PlaylistEntry& arrived, const PlaylistEntry& sent)
{
    return hasArrived(arrived.target, sent.target) && hasArrived(arrived.path, sent.path) && arrived.title == sent.title;
}

void checkEntries(const PlaylistEntries& entries)
{
    for (const PlaylistEntry& entry : entries) {
        expect(isUtf8(entry.path) && isUtf8(entry.title), "texts of a playlist are UTF-8");
        expect(entry.title.size() <= 1000, "a title is no longer than titles are");
        expect(std::none_of(entry.title.begin(), entry.title.end(), [](unsigned char c) { return c < ' '; }),
               "a title stands on one line");
    }
    const PlaylistEntries arrived = unpackEntries(packEntries(entries));
    expect(std::equal(arrived.begin(), arrived.end(), entries.begin(), entries.end(), entryHasArrived),
           "entries arrive as they are, but for paths longer than any");
}

} // namespace

// A file's extension on a line of its own, and its content; and the same bytes as what a worker hands over.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input = inputOf(data, size);
    const std::size_t end = std::min(input.find('\n'), input.size());
    if (const auto entries = parsePlaylist(input.substr(0, end), input.substr(std::min(end + 1, input.size())))) {
        checkEntries(*entries);
    }
    const PlaylistEntries arrived = unpackEntries(input);
    expect(input.starts_with(packEntries(arrived)) ||
               std::any_of(arrived.begin(), arrived.end(),
                           [](const auto& entry) {
                               return entry.path.empty() || entry.title.empty(); // left out because it was no UTF-8
                           }),
           "what has arrived is what was sent");
    return 0;
}
