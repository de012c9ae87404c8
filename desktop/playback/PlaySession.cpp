#include "desktop/playback/PlaySession.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace desktop {

namespace {

constexpr int kFirstWind = 2;
constexpr int kLastWind = 16;

// The next step of winding after speed @p speed.
int nextWind(int speed, bool forwards)
{
    const bool goesOn = forwards ? speed > 1 : speed < 0;
    const int now = std::abs(speed);
    const int next = goesOn && now < kLastWind ? now * 2 : kFirstWind;
    return forwards ? next : -next;
}

// What the user has chosen for one medium is not meant for the next one.
PlayerOptions forNextMedium(PlayerOptions options)
{
    const PlayerOptions usual;
    options.audioTrack = usual.audioTrack;
    options.subtitleTrack = usual.subtitleTrack;
    options.subtitleDelay = usual.subtitleDelay;
    options.zoom = usual.zoom;
    options.turn = usual.turn;
    return options;
}

} // namespace

PlaySession::PlaySession(FileType kind, const PlayServices& services, MakePlayer makePlayer)
    : m_services(services)
    , m_makePlayer(std::move(makePlayer))
{
    m_item.kind = kind;
}

void PlaySession::play(PlayQueue queue, double position, bool playAll, bool second)
{
    keepPosition();
    m_queue = std::move(queue);
    m_playAll = playAll;
    m_item.second = second;
    m_direction = Direction::Forwards;
    m_failures = 0;
    if (m_player == nullptr) {
        m_player = m_makePlayer(); // which is ready, perhaps, once the file is open
    }
    begin(position);
}

bool PlaySession::stop()
{
    if (!isActive()) {
        return false;
    }
    close();
    m_services.events.stopped(m_item);
    return true;
}

void PlaySession::close()
{
    keepPosition();
    goIdle();
}

bool PlaySession::playOrPause(bool play)
{
    if (m_state != State::Playing) {
        return false;
    }
    if (m_speed != 1) {
        m_player->wind(1);
    }
    m_speed = 1;
    m_paused = !play;
    m_player->pause(m_paused);
    keepPosition();
    waitForNext();
    tellSpeed();
    return true;
}

bool PlaySession::wind(bool forwards)
{
    if (m_state != State::Playing || kind() == FILE_TYPE_PHOTO) {
        return false;
    }
    m_speed = nextWind(m_paused ? 1 : m_speed, forwards);
    if (std::exchange(m_paused, false)) {
        m_player->pause(false); // which ends winding, so it comes first
        waitForNext();
    }
    m_player->wind(m_speed);
    tellSpeed();
    return true;
}

void PlaySession::setOptions(const PlayerOptions& options)
{
    m_options = options;
    if (m_player != nullptr) {
        m_player->setOptions(options);
    }
}

void PlaySession::setSlideInterval(std::chrono::milliseconds interval)
{
    m_slideInterval = interval;
    if (kind() == FILE_TYPE_PHOTO && m_state == State::Playing && m_due) {
        m_due = m_waitBegin + interval;
    }
}

void PlaySession::opened(OpenedMedium medium)
{
    if (m_state != State::Opening || medium.number != m_number) {
        return;
    }
    m_due.reset(); // the player has a time limit of its own
    if (!medium.fd) {
        failLoad(medium.error);
        return;
    }
    m_state = State::Loading;
    PlayerMedium load;
    load.number = m_number;
    load.type = static_cast<FileType>(m_item.entry.type);
    load.fd = std::move(medium.fd);
    load.start = m_position;
    load.subtitles = std::move(medium.subtitles);
    load.options = m_options;
    m_player->load(std::move(load));
}

void PlaySession::told(PlayerEvent event)
{
    const bool isLoading = m_state == State::Loading || m_state == State::Playing;
    if (isLoading && event.medium == m_number) {
        std::visit([this](auto& told) { handle(told); }, event.told);
    }
}

void PlaySession::volumeRemoved(const std::string& volume)
{
    if (!isActive() || m_location.volume != volume) {
        return;
    }
    if (m_state == State::Playing) {
        keepPosition();
        m_services.events.failed(m_item);
    } else {
        m_services.events.loadFailed(m_item, describeError(ENODEV));
    }
    goIdle(); // what follows lies on the same volume
}

void PlaySession::timePassed(Clock::time_point now)
{
    if (!m_due || now < *m_due) {
        return;
    }
    if (m_state == State::Opening) {
        m_due.reset();
        failLoad(describeError(ETIMEDOUT));
    } else if (kind() == FILE_TYPE_PHOTO) {
        finish();
    } else {
        keepPosition();
        waitForNext();
    }
}

void PlaySession::unload()
{
    m_options = forNextMedium(m_options);
    if (m_player != nullptr) {
        m_player->unload();
    }
}

void PlaySession::begin(double position)
{
    unload();
    m_item.index = static_cast<std::uint32_t>(m_queue->index());
    m_item.entry = m_queue->entry();
    m_location = m_services.volumes.locate(m_item.entry.path);
    m_facts = {};
    m_position = position;
    m_speed = 1;
    m_paused = false;
    m_state = State::Opening;
    m_due = Clock::now() + m_services.times.open;
    if (!m_location) { // nor does what follows
        m_services.events.loadFailed(m_item, describeError(ENODEV));
        goIdle();
    } else if (!m_services.files.open(++m_number, m_location, kind())) {
        m_due = Clock::now();
    }
}

bool PlaySession::step(Direction direction)
{
    if (!isActive() || !move(direction)) {
        return false;
    }
    m_direction = direction;
    m_failures = 0;
    begin(0);
    return true;
}

// The position belongs to what is left.
bool PlaySession::move(Direction direction)
{
    const bool moved = direction == Direction::Forwards ? m_queue->next(m_mode) : m_queue->previous(m_mode);
    if (moved) {
        keepPosition();
    }
    return moved;
}

// Past what cannot be played: on the way that was gone, and forwards where that way ends.
bool PlaySession::moveOn()
{
    if (move(m_direction)) {
        return true;
    }
    const bool wentBack = std::exchange(m_direction, Direction::Forwards) == Direction::Backwards;
    return wentBack && move(m_direction);
}

void PlaySession::goIdle()
{
    unload();
    m_state = State::Idle;
    m_due.reset();
}

void PlaySession::finish()
{
    if (kind() == FILE_TYPE_VIDEO) {
        m_services.positions.forget(m_location);
    }
    m_failures = 0;
    if (m_playAll && m_queue->advance(m_mode)) {
        m_direction = Direction::Forwards;
        begin(0);
    } else {
        endRun();
    }
}

void PlaySession::failLoad(const std::string& reason)
{
    m_services.events.loadFailed(m_item, reason);
    goPastFailed();
}

// In the middle of it: the storage or the player may be gone, so nothing follows.
void PlaySession::failPlaying()
{
    keepPosition();
    m_services.events.failed(m_item);
    m_playAll ? endRun() : goIdle();
}

// In the middle of it, by the fault of this file alone. What has played is followed by what is next, however it was come to.
void PlaySession::failIncomplete()
{
    keepPosition();
    m_services.events.failed(m_item);
    m_direction = Direction::Forwards;
    goPastFailed();
}

// A run in which nothing plays to its end any more ends, too.
void PlaySession::goPastFailed()
{
    m_state = State::Opening; // its position has been kept, or is none of this file's
    ++m_failures;
    if (!m_playAll) {
        goIdle();
    } else if (m_failures < m_queue->size() && moveOn()) {
        begin(0);
    } else {
        endRun();
    }
}

void PlaySession::endRun()
{
    m_services.events.ended(m_item);
    goIdle();
}

void PlaySession::keepPosition()
{
    if (m_state == State::Playing && kind() == FILE_TYPE_VIDEO) {
        m_services.positions.note(m_location, m_position, m_facts.duration);
    }
}

void PlaySession::tellSpeed() const
{
    m_services.events.speed(m_item, m_paused ? 0 : m_speed, m_facts.video.hdr);
}

// A paused slide show stays where it is, and so does one of a single photo.
void PlaySession::waitForNext()
{
    m_due.reset();
    m_waitBegin = Clock::now();
    if (m_paused) {
        return;
    }
    if (kind() == FILE_TYPE_VIDEO) {
        m_due = m_waitBegin + m_services.times.keep;
    } else if (kind() == FILE_TYPE_PHOTO && m_playAll) {
        m_due = m_waitBegin + m_slideInterval;
    }
}

void PlaySession::handle(PlayerLoaded& told)
{
    m_state = State::Playing;
    m_facts = std::move(told.facts);
    m_services.events.loaded(m_item, m_facts);
    if (m_facts.videoUnsupported) {
        m_services.events.videoUnsupported();
    }
    if (m_facts.audioUnsupported) {
        m_services.events.audioUnsupported(m_item, m_facts.audio.codec);
    }
    if (kind() != FILE_TYPE_PHOTO) {
        tellSpeed();
    }
    waitForNext();
}

void PlaySession::handle(PlayerFactsChanged& told)
{
    const bool isSilenced = told.facts.audioUnsupported && !m_facts.audioUnsupported;
    m_facts = std::move(told.facts);
    if (isSilenced) {
        m_services.events.audioUnsupported(m_item, m_facts.audio.codec);
    }
}

void PlaySession::handle(const PlayerPosition& told)
{
    m_position = told.seconds;
    if (m_state == State::Playing && kind() != FILE_TYPE_PHOTO) {
        m_services.events.progress(static_cast<std::uint32_t>(std::lround(std::floor(m_position))));
    }
}

void PlaySession::handle(const PlayerAtStart& /*told*/)
{
    m_speed = 1;
    tellSpeed();
}

void PlaySession::handle(const PlayerEnded& told)
{
    switch (told.reason) {
    case PlayerEnded::Reason::Finished:
        return finish();
    case PlayerEnded::Reason::Unsupported:
        kind() == FILE_TYPE_MUSIC ? m_services.events.audioUnsupported(m_item, "") : m_services.events.videoUnsupported();
        return failLoad(told.text);
    default:
        break;
    }
    if (m_state != State::Playing) {
        failLoad(told.text);
    } else if (told.reason == PlayerEnded::Reason::Incomplete) {
        failIncomplete();
    } else {
        failPlaying();
    }
}

} // namespace desktop
