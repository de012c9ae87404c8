#include "desktop/boundary/ShownLists.h"

#include "desktop/base/Log.h"

namespace desktop {

namespace {

EntryList entriesOf(const ListingPointer& listing)
{
    return listing != nullptr ? EntryList(listing, &listing->entries) : nullptr;
}

} // namespace

void ShownLists::show(const std::string& name, EntryList list)
{
    m_name = withoutTrailingSlash(name);
    m_list = [list = std::move(list)] { return list; };
}

void ShownLists::showCurrent(const std::string& directory)
{
    m_name = withoutTrailingSlash(directory);
    m_list = [this] { return current(); };
}

void ShownLists::showGroup(const std::string& key)
{
    m_name = key;
    m_list = [this, key] { return m_grouping.entries(key); };
}

EntryList ShownLists::current() const
{
    return entriesOf(m_listings.current());
}

EntryList ShownLists::read(const std::string& path)
{
    const std::optional<bool> isPlaylist = m_playlists.isPlaylist(path);
    if (!isPlaylist) { // the stick does not answer, and need not be asked again
        return nullptr;
    }
    return *isPlaylist ? m_playlists.entriesOf(path) : entriesOf(m_listings.of(path));
}

EntryList ShownLists::toPlay(const std::string& name)
{
    EntryList list;
    if (wasShownLast(name)) {
        list = m_list();
    }
    if (list == nullptr) {
        list = m_grouping.entries(name);
    }
    if (list == nullptr) { // a change that has failed leaves the directory before on the screen
        list = entriesOf(m_listings.known(name.empty() ? m_name : name));
    }
    if (list == nullptr && !name.empty()) {
        list = read(name);
    }
    if (list == nullptr) {
        logLine(LogLevel::Warning, name.empty() ? "no list has been shown to play from" : "there is no list " + name);
    }
    return list;
}

bool ShownLists::wasShownLast(const std::string& name) const
{
    return m_list != nullptr && (name.empty() || m_name == name || m_name == withoutTrailingSlash(name));
}

} // namespace desktop
