#include "desktop/boundary/ShownLists.h"

#include "desktop/base/Log.h"
#include "desktop/text/NameEncoding.h"

#include <algorithm>

namespace desktop {

namespace {

// Bounds on what is kept besides the list shown last.
constexpr std::size_t kMaxLists = 32;
constexpr std::size_t kMaxEntries = 200'000;

EntryList entriesIn(const ListingPointer& listing)
{
    return listing != nullptr ? EntryList(listing, &listing->entries) : nullptr;
}

} // namespace

void ShownLists::show(const std::string& name, EntryList list)
{
    add(Kind::Fixed, withoutTrailingSlash(name), std::move(list));
}

void ShownLists::showCurrent(const std::string& directory)
{
    add(Kind::Directory, withoutTrailingSlash(directory));
}

void ShownLists::showGroup(const std::string& key)
{
    add(Kind::Group, key);
}

void ShownLists::forgetBelow(const std::string& directory)
{
    const auto isBelow = [folder = decodeName(withoutTrailingSlash(directory))](const Shown& shown) {
        return shown.kind != Kind::Group && liesIn(decodeName(shown.name), folder);
    };
    if (!m_shown.empty()) {
        m_shown.erase(std::remove_if(std::next(m_shown.begin()), m_shown.end(), isBelow), m_shown.end());
    }
}

EntryList ShownLists::current() const
{
    return entriesIn(m_listings.current());
}

EntryList ShownLists::read(const std::string& path)
{
    const std::optional<bool> isPlaylist = m_playlists.isPlaylist(path);
    if (!isPlaylist) { // the stick does not answer, and need not be asked again
        return nullptr;
    }
    return *isPlaylist ? m_playlists.entriesOf(path) : entriesIn(m_listings.of(path));
}

EntryList ShownLists::toPlay(const std::string& name)
{
    const Shown* const shown = find(name);
    const bool isOutdated = shown != nullptr && isOfAnotherStick(*shown);
    EntryList list = shown != nullptr && !isOutdated ? entriesOf(*shown) : nullptr;
    if (list == nullptr && !name.empty()) {
        list = m_grouping.entries(name, m_grouping.order());
    }
    if (list == nullptr && !name.empty() && !isOutdated) {
        list = entriesIn(m_listings.known(name));
    }
    if (list == nullptr && !name.empty()) {
        list = read(name);
    }
    if (list == nullptr) {
        logLine(LogLevel::Warning, name.empty() ? "no list has been shown to play from" : "there is no list " + name);
    }
    return list;
}

void ShownLists::add(Kind kind, std::string name, EntryList entries)
{
    std::erase_if(m_shown, [&name](const Shown& shown) { return shown.name == name; });
    std::string volumeId = m_volumes.locate(name).volumeId;
    m_shown.push_front({kind, std::move(name), std::move(volumeId), std::move(entries), m_grouping.order()});
    while (isTooMuch()) {
        m_shown.pop_back();
    }
}

bool ShownLists::isTooMuch() const
{
    std::size_t entries = 0;
    for (const Shown& shown : m_shown) {
        entries += shown.entries != nullptr ? shown.entries->size() : 0;
    }
    return m_shown.size() > 1 && (m_shown.size() > kMaxLists || entries > kMaxEntries);
}

const ShownLists::Shown* ShownLists::find(const std::string& name) const
{
    const auto isIt = [&name, plain = withoutTrailingSlash(name)](const Shown& shown) {
        return name.empty() || shown.name == name || shown.name == plain;
    };
    const auto found = std::find_if(m_shown.begin(), m_shown.end(), isIt);
    return found != m_shown.end() ? &*found : nullptr;
}

// Whether another one has come to the place of the stick that the list was on.
bool ShownLists::isOfAnotherStick(const Shown& shown) const
{
    const Location place = m_volumes.locate(shown.name);
    return place && place.volumeId != shown.volumeId;
}

// Null while it is not known.
EntryList ShownLists::entriesOf(const Shown& shown) const
{
    if (shown.kind == Kind::Group) {
        return m_grouping.entries(shown.name, shown.order);
    }
    if (shown.kind == Kind::Fixed) {
        return shown.entries;
    }
    // A change that has failed leaves the directory before on the screen.
    const EntryList list = &shown == &m_shown.front() ? current() : nullptr;
    return list != nullptr ? list : entriesIn(m_listings.known(shown.name));
}

} // namespace desktop
