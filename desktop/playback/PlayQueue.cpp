#include "desktop/playback/PlayQueue.h"

#include <algorithm>
#include <iterator>
#include <numeric>

namespace desktop {

namespace {

// Of what has played, more than anybody goes back.
constexpr std::size_t kMaxHistory = 1000;

} // namespace

bool isOfKind(int entry, FileType kind)
{
    return entry == kind || (entry == FILE_TYPE_PANORAMA && kind == FILE_TYPE_PHOTO);
}

std::optional<PlayQueue> PlayQueue::from(EntryList list, FileType kind, std::size_t index, unsigned int seed)
{
    std::vector<std::size_t> indices;
    for (std::size_t i = 0; i < list->size(); ++i) {
        if (isOfKind((*list)[i].type, kind)) {
            indices.push_back(i);
        }
    }
    const auto first = std::lower_bound(indices.begin(), indices.end(), index);
    if (first == indices.end()) {
        return std::nullopt;
    }
    const auto current = static_cast<std::size_t>(first - indices.begin());
    return PlayQueue(std::move(list), std::move(indices), current, seed);
}

PlayQueue::PlayQueue(EntryList list, std::vector<std::size_t> indices, std::size_t current, unsigned int seed)
    : m_list(std::move(list))
    , m_indices(std::move(indices))
    , m_current(current)
    , m_history{current}
    , m_unplayed(m_indices.size())
    , m_random(seed)
{
    std::iota(m_unplayed.begin(), m_unplayed.end(), std::size_t{0});
    m_unplayed.erase(m_unplayed.begin() + static_cast<std::ptrdiff_t>(current));
}

bool PlayQueue::advance(PlayerModeE mode)
{
    return mode == PLAYER_MODE_REPEAT_ONE || next(mode);
}

bool PlayQueue::next(PlayerModeE mode)
{
    return mode == PLAYER_MODE_SHUFFLE ? shuffleOn() : step(1, mode != PLAYER_MODE_SEQUENCE);
}

bool PlayQueue::previous(PlayerModeE mode)
{
    if (mode != PLAYER_MODE_SHUFFLE) {
        return step(-1, mode != PLAYER_MODE_SEQUENCE);
    }
    if (m_place == 0) {
        return false;
    }
    m_current = m_history[--m_place];
    return true;
}

bool PlayQueue::step(std::ptrdiff_t by, bool wraps)
{
    const auto count = static_cast<std::ptrdiff_t>(size());
    const std::ptrdiff_t to = static_cast<std::ptrdiff_t>(m_current) + by;
    if (!wraps && (to < 0 || to >= count)) {
        return false;
    }
    moveTo(static_cast<std::size_t>((to + count) % count));
    return true;
}

// Forwards again along the way that was gone back, and then to one that has not played yet.
bool PlayQueue::shuffleOn()
{
    if (m_place + 1 < m_history.size()) {
        m_current = m_history[++m_place];
        return true;
    }
    if (m_unplayed.empty()) { // all have played: a new round
        m_unplayed.resize(size());
        std::iota(m_unplayed.begin(), m_unplayed.end(), std::size_t{0});
    }
    moveTo(someUnplayed());
    return true;
}

// Not the one that has just played, unless it is the only one.
std::size_t PlayQueue::someUnplayed()
{
    std::vector<std::size_t> others;
    std::copy_if(m_unplayed.begin(), m_unplayed.end(), std::back_inserter(others),
                 [this](std::size_t entry) { return entry != m_current; });
    if (others.empty()) {
        return m_current;
    }
    return others[std::uniform_int_distribution<std::size_t>(0, others.size() - 1)(m_random)];
}

void PlayQueue::moveTo(std::size_t current)
{
    m_current = current;
    m_unplayed.erase(std::remove(m_unplayed.begin(), m_unplayed.end(), current), m_unplayed.end());
    m_history.resize(m_place + 1);
    m_history.push_back(current);
    if (m_history.size() > kMaxHistory) {
        m_history.erase(m_history.begin());
    }
    m_place = m_history.size() - 1;
}

} // namespace desktop
