#include "desktop/playback/Playback.h"

#include <algorithm>
#include <random>

namespace desktop {

namespace {

constexpr FileType kKinds[] = {FILE_TYPE_VIDEO, FILE_TYPE_PHOTO, FILE_TYPE_MUSIC}; // by what the screen shows first

bool isMode(int mode)
{
    return mode >= PLAYER_MODE_SEQUENCE && mode <= PLAYER_MODE_SHUFFLE;
}

CurrentMedium mediumOf(const PlaySession& session)
{
    return {session.item(), *session.facts()};
}

} // namespace

Playback::Playback(LocationOpener volumes, EventQueue& events, std::shared_ptr<PlayPositions> positions,
                   const PlayerFactory& players, std::function<void(const std::string& key)> keyPressed,
                   const PlayTimes& times)
    : m_volumes(std::move(volumes))
    , m_events(events)
    , m_positions(std::move(positions))
    , m_keyPressed(std::move(keyPressed))
    , m_times(times)
    , m_files(times.open, [this](OpenedMedium medium) { opened(std::move(medium)); })
    , m_alarm([this] { return timePassed(); })
{
    const PlayServices services = {m_volumes, m_files, m_events, *m_positions, m_times};
    for (std::size_t i = 0; i < kPlayers; ++i) {
        const FileType kind = kKinds[i];
        m_sessions[i] = std::make_unique<PlaySession>(kind, services, [this, kind, players] {
            return players(kind, [this, kind](PlayerEvent event) { told(kind, std::move(event)); });
        });
    }
}

Playback::~Playback()
{
    const LockGuard lock(m_mutex);
    m_closed = true;
    for (const auto& session : m_sessions) {
        session->close();
    }
}

std::optional<std::uint32_t> Playback::play(const PlayRequest& request)
{
    auto queue = PlayQueue::from(request.list, request.kind, request.index, std::random_device()());
    const LockGuard lock(m_mutex);
    PlaySession* const player = session(request.kind);
    if (!queue || player == nullptr) {
        return std::nullopt;
    }
    player->keepPosition(); // which may be the one that is asked for
    makeWay(request.kind);
    const auto position =
        request.resume ? m_positions->find(m_volumes.locate(queue->entry().path)) : std::optional<double>();
    const auto index = static_cast<std::uint32_t>(queue->index());
    player->play(std::move(*queue), position.value_or(request.start), request.playAll, request.second);
    m_latest = request.kind;
    setAlarm();
    return index;
}

std::optional<PlayFirst> Playback::firstOf(const PlayRequest& request)
{
    const auto queue = PlayQueue::from(request.list, request.kind, request.index);
    if (!queue) {
        return std::nullopt;
    }
    act(FILE_TYPE_VIDEO, [](PlaySession& player) {
        player.keepPosition();
        return true;
    });
    const Location file = m_volumes.locate(queue->entry().path);
    const bool resumes = request.kind == FILE_TYPE_VIDEO && file && m_positions->find(file);
    return PlayFirst{static_cast<std::uint32_t>(queue->index()), resumes};
}

std::optional<std::uint32_t> Playback::stop(FileType kind)
{
    std::uint32_t index = 0;
    const bool stopped = act(kind, [&index](PlaySession& player) {
        index = player.item().index;
        return player.stop();
    });
    return stopped ? std::optional<std::uint32_t>(index) : std::nullopt;
}

void Playback::stopAll(bool keepMusic)
{
    for (const FileType kind : kKinds) {
        if (kind != FILE_TYPE_MUSIC || !keepMusic) {
            stop(kind);
        }
    }
}

void Playback::forgetPositions()
{
    m_positions->forgetAll();
}

bool Playback::playOrPause(FileType kind, bool play)
{
    return act(kind, [play](PlaySession& player) { return player.playOrPause(play); });
}

bool Playback::next(FileType kind)
{
    return act(kind, [](PlaySession& player) { return player.next(); });
}

bool Playback::previous(FileType kind)
{
    return act(kind, [](PlaySession& player) { return player.previous(); });
}

bool Playback::wind(FileType kind, bool forwards)
{
    return act(kind, [forwards](PlaySession& player) { return player.wind(forwards); });
}

bool Playback::setMode(FileType kind, int mode)
{
    return isMode(mode) && act(kind, [mode](PlaySession& player) {
               player.setMode(static_cast<PlayerModeE>(mode));
               return true;
           });
}

std::optional<PlayerModeE> Playback::mode(FileType kind) const
{
    const LockGuard lock(m_mutex);
    const PlaySession* const player = session(kind);
    return player != nullptr ? std::optional<PlayerModeE>(player->mode()) : std::nullopt;
}

std::optional<CurrentMedium> Playback::current(FileType kind) const
{
    const LockGuard lock(m_mutex);
    const PlaySession* const player = session(kind);
    return player != nullptr && player->facts() != nullptr ? std::optional<CurrentMedium>(mediumOf(*player)) : std::nullopt;
}

std::optional<CurrentMedium> Playback::current() const
{
    const LockGuard lock(m_mutex);
    const PlaySession* const latest = session(m_latest);
    if (latest != nullptr && latest->facts() != nullptr) {
        return mediumOf(*latest);
    }
    for (const auto& player : m_sessions) {
        if (player->facts() != nullptr) {
            return mediumOf(*player);
        }
    }
    return std::nullopt;
}

PlayerOptions Playback::options(FileType kind) const
{
    const LockGuard lock(m_mutex);
    const PlaySession* const player = session(kind);
    return player != nullptr ? player->options() : PlayerOptions();
}

bool Playback::changeOptions(FileType kind,
                             const std::function<bool(PlayerOptions& options, const MediaFacts* facts)>& change)
{
    return act(kind, [&change](PlaySession& player) {
        PlayerOptions options = player.options();
        const bool changed = change(options, player.facts());
        if (changed) {
            player.setOptions(options);
        }
        return changed;
    });
}

void Playback::setSlideInterval(std::chrono::seconds interval)
{
    act(FILE_TYPE_PHOTO, [interval](PlaySession& player) {
        player.setSlideInterval(interval);
        return true;
    });
}

void Playback::takeFrame(int width, int height, MediaPlayer::FrameHandler handle)
{
    {
        const LockGuard lock(m_mutex);
        for (const auto& player : m_sessions) {
            if (player->facts() != nullptr) {
                player->player().takeFrame(width, height, std::move(handle));
                return;
            }
        }
    }
    handle({});
}

void Playback::volumeRemoved(const std::string& volume)
{
    const LockGuard lock(m_mutex);
    for (const auto& player : m_sessions) {
        player->volumeRemoved(volume);
    }
}

PlaySession* Playback::session(FileType kind)
{
    const auto* const found = std::find(std::begin(kKinds), std::end(kKinds), kind);
    return found != std::end(kKinds) ? m_sessions[static_cast<std::size_t>(found - kKinds)].get() : nullptr;
}

const PlaySession* Playback::session(FileType kind) const
{
    return const_cast<Playback*>(this)->session(kind);
}

// False when there is no player for @p kind, or @p action says so.
template <typename Action>
bool Playback::act(FileType kind, const Action& action)
{
    const LockGuard lock(m_mutex);
    PlaySession* const player = session(kind);
    const bool done = player != nullptr && action(*player);
    setAlarm();
    return done;
}

// There is one screen, and one pair of loudspeakers.
void Playback::makeWay(FileType kind)
{
    for (const auto& player : m_sessions) {
        const bool either = kind == FILE_TYPE_VIDEO || player->kind() == FILE_TYPE_VIDEO;
        if (player->kind() != kind && either) {
            player->stop();
        }
    }
}

void Playback::setAlarm()
{
    for (const auto& player : m_sessions) {
        if (const auto due = player->due()) {
            m_alarm.set(*due);
        }
    }
}

void Playback::opened(OpenedMedium medium)
{
    const LockGuard lock(m_mutex);
    PlaySession* const player = session(medium.kind);
    player->opened(std::move(medium));
    m_files.openWaiting();
    setAlarm();
}

void Playback::told(FileType kind, PlayerEvent event)
{
    if (const auto* const key = std::get_if<PlayerKey>(&event.told)) {
        if (m_keyPressed) {
            m_keyPressed(key->name);
        }
        return;
    }
    const LockGuard lock(m_mutex);
    if (!m_closed) {
        session(kind)->told(std::move(event));
        setAlarm();
    }
}

std::optional<Alarm::Clock::time_point> Playback::timePassed()
{
    const LockGuard lock(m_mutex);
    std::optional<Alarm::Clock::time_point> next;
    for (const auto& player : m_sessions) {
        player->timePassed(Alarm::Clock::now());
        const auto due = player->due();
        next = next && due ? std::min(*next, *due) : (next ? next : due);
    }
    return next;
}

} // namespace desktop
