#include "desktop/player/Player.h"

#include "desktop/player/MemoryFile.h"
#include "desktop/player/WindowPicture.h"
#include "desktop/workers/PlayerMessages.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <thread>
#include <utility>

namespace desktop {

namespace {

using namespace std::chrono_literals;

constexpr auto kBeat = 500ms;
constexpr auto kTick = 200ms;     // how often it looks after what plays
constexpr auto kJump = 250ms;     // between two pictures while winding by jumps
constexpr auto kTelling = 950ms;  // between two positions: a second, less what pictures come early by
constexpr auto kLateAnswer = 1s;  // for a read: there are no new pictures until it comes
constexpr auto kNoAnswer = 10s;   // for a read, which a disk may spin up for
constexpr int kFastestPlayed = 4; // faster winding is by jumps
constexpr int kFastest = 16;
constexpr int kMaxFrameSide = 4096; // pixels
constexpr int kFullTurn = 360;      // degrees
constexpr const char* kNoDisplay = "There is no display to show it on.";

bool isWindingSpeed(int speed)
{
    const int fast = std::abs(speed);
    return speed == 1 || fast == 2 || fast == 4 || fast == 8 || fast == kFastest;
}

// Well before the end: more than what lengths of streams differ by.
bool isWellBefore(double position, double end)
{
    constexpr double kLeast = 3; // seconds
    constexpr double kPart = 0.05;
    return position < end - std::max(kLeast, end * kPart);
}

bool hasNumber(const Json::Value& json, const char* key)
{
    return json[key].isUInt64();
}

std::string clockTime(double seconds)
{
    const long whole = std::lround(seconds);
    char text[32] = "";
    std::snprintf(text, sizeof text, "%ld:%02ld", whole / 60, whole % 60);
    return text;
}

} // namespace

Player::Player(const PlayerOutput& output, int channel)
    : m_output(output)
    , m_channel(channel)
    , m_mailbox(std::make_shared<Mailbox>())
{
    setUp(m_mpv, output);
    m_files.attachTo(m_mpv.handle());
    m_mpv.initialize();
    mpv_set_wakeup_callback(
        &m_mpv.handle(), [](void* mailbox) { static_cast<Mailbox*>(mailbox)->wake(); }, m_mailbox.get());
    if (output.window) {
        bindKeys(m_mpv);
    } else {
        m_drawer =
            std::make_unique<FrameDrawer>(m_mpv.handle(), [this](int number, bool drawn) { frameDrawn(number, drawn); });
    }
    mpv_hook_add(&m_mpv.handle(), 0, "on_preloaded", 0);
    mpv_observe_property(&m_mpv.handle(), 0, "time-pos", MPV_FORMAT_DOUBLE);
    for (const char* const name : {"sub-text", "eof-reached", "aid", "sid"}) {
        mpv_observe_property(&m_mpv.handle(), 0, name, MPV_FORMAT_NONE);
    }
}

Player::~Player()
{
    clear();
}

void Player::run()
{
    while (!m_alone) {
        std::array<pollfd, 2> waits = {{{m_channel, POLLIN, 0}, {m_mailbox->fd(), POLLIN, 0}}};
        poll(waits.data(), waits.size(), pollTime());
        if (waits[0].revents != 0) {
            receive();
        }
        m_mailbox->work();
        handleMpv();
        tick();
    }
}

// What comes over the channel.

void Player::receive()
{
    std::optional<WorkerMessage> message = receiveMessage(m_channel);
    if (!message) {
        m_alone = true;
        return;
    }
    const bool isAnswered = message->body["do"] == "frame"; // a picture is, once it is drawn
    handle(std::move(*message));
    if (!isAnswered) {
        beat();
    }
}

void Player::handle(WorkerMessage message)
{
    const Json::Value body = message.body;
    const std::string what = body["do"].isString() ? body["do"].asString() : "";
    if (what == "subtitle" && !message.files.empty()) {
        UniqueFd pictures = message.files.size() > 1 ? std::move(message.files[1]) : UniqueFd();
        m_beside.push_back({textFromJson(body["name"]), textFromJson(body["language"]), std::move(message.files.front()),
                            std::move(pictures)});
    } else if (what == "load") {
        load(std::move(message));
    } else if (what == "frame") {
        takeFrame(std::move(message));
    } else if (m_medium == nullptr || !hasNumber(body, "medium") || body["medium"].asUInt64() != m_medium->number) {
        return; // it has ended meanwhile
    } else if (what == "unload") {
        clear();
    } else if (what == "pause") {
        pause(body["paused"].asBool());
    } else if (what == "wind") {
        wind(numberFromJson(body["speed"], -kFastest, kFastest, 1));
    } else if (what == "seek") {
        seek(secondsFromJson(body["seconds"]));
    } else if (what == "options" && body["options"].isObject()) {
        setOptions(optionsFromJson(body["options"]));
    }
}

void Player::load(WorkerMessage message)
{
    clear();
    const Json::Value& body = message.body;
    if (message.files.size() != 1 || !hasNumber(body, "medium") || !body["options"].isObject()) {
        return;
    }
    m_medium = std::make_unique<Medium>();
    const std::uint64_t number = body["medium"].asUInt64();
    m_medium->number = number;
    m_medium->type = static_cast<FileType>(numberFromJson(body["type"], FILE_TYPE_UNKNOWN, FILE_TYPE_PANORAMA));
    m_medium->start = secondsFromJson(body["start"]);
    m_medium->paused = body["paused"].isBool() && body["paused"].asBool();
    m_medium->options = optionsFromJson(body["options"]);
    // What happens to the file is noticed on other threads, the last of them one that it was left to.
    m_medium->file = std::make_shared<OpenMedium>(
        std::move(message.files.front()),
        [this, mailbox = m_mailbox, number] { mailbox->post([this, number] { readFailed(number); }); },
        [this, mailbox = m_mailbox, number] { mailbox->post([this, number] { closed(number); }); });
    if (!m_medium->isPhoto()) {
        giveToMpv(m_medium->file);
    }
    prepare(std::exchange(m_beside, {}));
}

void Player::pause(bool paused)
{
    m_medium->paused = paused;
    if (m_medium->winding || m_medium->windingSpeed != 1) {
        playOn(position());
    } else if (m_medium->released) {
        m_mpv.setFlag("pause", paused);
    }
}

void Player::wind(int speed)
{
    if (!m_medium->loaded || m_medium->isPhoto() || !isWindingSpeed(speed)) {
        return;
    }
    const double from = position();
    m_medium->paused = false;
    if (speed == 1) {
        playOn(from);
        return;
    }
    m_mpv.setFlag("mute", true);
    if (speed > 0 && speed <= kFastestPlayed) {
        playOn(from);
        m_medium->windingSpeed = speed;
        m_mpv.setFlag("mute", true);
        m_mpv.set("speed", static_cast<double>(speed));
        return;
    }
    m_mpv.setFlag("pause", true);
    m_medium->windingSpeed = 1;
    m_medium->winding.emplace(speed, from, Clock::now());
    m_medium->nextJump = Clock::now();
    hidePicture();
    tellText();
}

void Player::seek(double seconds)
{
    if (m_medium->winding) {
        m_medium->winding.emplace(m_medium->winding->speed(), seconds, Clock::now());
    } else if (m_medium->released) {
        m_mpv.commandLater({"seek", std::to_string(seconds).c_str(), "absolute+exact"});
        m_medium->sought = true;
    }
    m_medium->start = seconds;
}

void Player::setOptions(const PlayerOptions& options)
{
    const PlayerOptions before = std::exchange(m_medium->options, options);
    if (!m_medium->released || before == options) {
        return;
    }
    applyOptionsNow();
    if (before.subtitleCharset != options.subtitleCharset) {
        removeSubtitles();
        addSubtitles();
    }
    chooseTracks();
    if (m_medium->paused && before.subtitleTrack != options.subtitleTrack && m_medium->loaded) {
        m_mpv.commandLater({"seek", "0", "relative+exact"}); // mpv reads the track from here on, not what is shown already
    }
}

void Player::takeFrame(WorkerMessage message)
{
    const Json::Value& body = message.body;
    FrameOrder order = {numberFromJson(body["frame"], 1, std::numeric_limits<int>::max()),
                        numberFromJson(body["width"], 1, kMaxFrameSide), numberFromJson(body["height"], 1, kMaxFrameSide),
                        UniqueFd()};
    const bool isSomething = m_medium != nullptr && m_medium->loaded && m_medium->prepared->probed.canShow;
    if (message.files.size() != 1 || order.width == 0 || order.height == 0 || !isSomething) {
        frameDrawn(order.number, false);
        return;
    }
    order.output = std::move(message.files.front());
    if (m_drawer != nullptr) {
        m_drawer->draw(std::move(order));
    } else {
        frameDrawn(order.number, drawWindow(m_mpv, order));
    }
}

void Player::frameDrawn(int number, bool drawn) const
{
    Json::Value json;
    json["tell"] = "frame";
    json["frame"] = number;
    json["empty"] = !drawn;
    sendMessage(m_channel, json);
}

// How a medium comes to be played.

// On a thread of its own: the file may not answer, or take long to decode.
void Player::prepare(std::vector<SubtitleFile> beside)
{
    auto work = [this, mailbox = m_mailbox, number = m_medium->number, type = m_medium->type, file = m_medium->file,
                 subtitles = std::move(beside)]() mutable {
        auto medium = std::make_shared<PreparedMedium>(prepareMedium(type, *file, std::move(subtitles)));
        file.reset();
        mailbox->post([this, number, medium] { prepared(number, std::move(*medium)); });
    };
    std::thread(std::move(work)).detach();
}

void Player::prepared(std::uint64_t number, PreparedMedium medium)
{
    if (m_medium == nullptr || m_medium->number != number) {
        return;
    }
    if (medium.refusal) {
        end(std::move(*medium.refusal));
        return;
    }
    m_medium->prepared = std::move(medium);
    if (m_medium->isPhoto()) {
        giveToMpv(m_medium->prepared->picture);
        m_medium->file.reset();
    }
    continueLoading();
}

void Player::giveToMpv(const std::shared_ptr<OpenMedium>& file)
{
    const std::string name = m_files.add(file);
    m_medium->names.push_back(name);
    const char* const words[] = {"loadfile", name.c_str(), "replace", nullptr};
    mpv_command_async(&m_mpv.handle(), m_medium->number, const_cast<const char**>(words));
}

// Once mpv has opened the file and waits, and its preparation is done.
void Player::continueLoading()
{
    if (m_medium->hook == 0 || !m_medium->prepared) {
        return;
    }
    const PreparedMedium& prepared = *m_medium->prepared;
    const double length = prepared.probed.facts.duration;
    const bool startsInside = m_medium->start > 0 && (length <= 0 || m_medium->start < length);
    m_medium->released = true;
    m_mpv.set("start", startsInside ? std::to_string(m_medium->start) : "none");
    m_mpv.setFlag("pause", m_medium->paused);
    m_mpv.setFlag("mute", false);
    m_medium->turn = PictureTurn();
    applyTurn(m_mpv, m_medium->turn);
    applyOptionsNow();
    m_mpv.set("vid", std::string(prepared.probed.canShow ? "auto" : "no"));
    addSubtitles();
    chooseTracks();
    mpv_hook_continue(&m_mpv.handle(), std::exchange(m_medium->hook, 0));
}

void Player::applyOptionsNow()
{
    const ProbedMedia& probed = m_medium->prepared->probed;
    const PictureTurn turn = {probed.mirrored, (probed.turn + m_medium->options.turn) % kFullTurn};
    if (turn != m_medium->turn) {
        m_medium->turn = turn;
        applyTurn(m_mpv, turn);
    }
    applyOptions(m_mpv, m_medium->options, m_medium->isPhoto(), turn.degrees % 180 != 0);
    if (m_medium->windingSpeed != 1) {
        m_mpv.set("speed", static_cast<double>(m_medium->windingSpeed));
    }
}

void Player::addSubtitles()
{
    for (const StoredSubtitle& subtitle : m_medium->prepared->subtitles) {
        UniqueFd playable = playableSubtitle(subtitle, m_medium->options.subtitleCharset);
        if (!playable) {
            continue;
        }
        auto file = std::make_shared<OpenMedium>(
            std::move(playable), [] {}, [] {});
        const std::string name = m_files.add(file);
        m_medium->names.push_back(name);
        m_medium->externals[name] = std::move(file);
        m_mpv.command({"sub-add", name.c_str(), "auto", subtitle.name.c_str(), subtitle.language.c_str()});
    }
}

void Player::removeSubtitles()
{
    for (const Track& track : subtitleTracks()) {
        if (track.media.external) {
            m_mpv.command({"sub-remove", std::to_string(track.media.id).c_str()});
        }
    }
    for (const auto& [name, file] : m_medium->externals) {
        m_files.remove(name);
    }
    m_medium->externals.clear();
}

void Player::chooseTracks()
{
    const int audio = chosenAudio();
    m_mpv.set("aid", audio > 0 ? std::to_string(audio) : "no");
    const int subtitle = chosenSubtitle();
    m_mpv.set("sid", subtitle > 0 ? std::to_string(subtitle) : "no");
}

int Player::chosenAudio() const
{
    const std::vector<ProbedAudio>& tracks = m_medium->prepared->probed.audio;
    const int wanted = m_medium->options.audioTrack;
    if (wanted > 0 && wanted <= static_cast<int>(tracks.size())) {
        return tracks[static_cast<std::size_t>(wanted) - 1].decodable ? wanted : 0;
    }
    const auto first = [&tracks](bool preferred) {
        const auto found = std::find_if(tracks.begin(), tracks.end(), [preferred](const ProbedAudio& audio) {
            return audio.decodable && (audio.preferred || !preferred);
        });
        return found != tracks.end() ? found->track.id : 0;
    };
    const int preferred = first(true);
    return preferred > 0 ? preferred : first(false);
}

// Somebody has put a file beside the video, or marked a track: that one; else the first.
int Player::chosenSubtitle() const
{
    const std::vector<Track> tracks = subtitleTracks();
    const auto first = [&tracks](const auto& fits) {
        const auto found = std::find_if(tracks.begin(), tracks.end(), fits);
        return found != tracks.end() ? found->media.id : 0;
    };
    const int wanted = first([this](const Track& track) { return track.media.id == m_medium->options.subtitleTrack; });
    const int external = first([](const Track& track) { return track.media.external; });
    const int preferred = first([](const Track& track) { return track.preferred; });
    const int any = first([](const Track&) { return true; });
    for (const int id : {wanted, external, preferred}) {
        if (id > 0) {
            return id;
        }
    }
    return any;
}

std::vector<Player::Track> Player::subtitleTracks() const
{
    std::vector<Track> tracks;
    for (const ProbedSubtitle& subtitle : m_medium->prepared->probed.subtitles) {
        tracks.push_back({subtitle.track, m_medium->file, subtitle.stream, subtitle.preferred});
    }
    const int count = static_cast<int>(m_mpv.number("track-list/count"));
    for (int i = 0; i < count; ++i) {
        const std::string entry = "track-list/" + std::to_string(i) + "/";
        const auto text = [&](const char* key) { return m_mpv.text((entry + key).c_str()); };
        const auto file = m_medium->externals.find(text("external-filename"));
        if (file != m_medium->externals.end()) {
            const int id = static_cast<int>(m_mpv.number((entry + "id").c_str()));
            const int stream = static_cast<int>(m_mpv.number((entry + "ff-index").c_str()));
            tracks.push_back({{id, text("title"), text("lang"), text("codec"), true}, file->second, stream, false});
        }
    }
    return tracks;
}

// What mpv says.

void Player::handleMpv()
{
    for (const mpv_event* event = mpv_wait_event(&m_mpv.handle(), 0); event->event_id != MPV_EVENT_NONE;
         event = mpv_wait_event(&m_mpv.handle(), 0)) {
        handleEvent(*event);
    }
}

void Player::handleEvent(const mpv_event& event)
{
    switch (event.event_id) {
    case MPV_EVENT_COMMAND_REPLY:
        handleReply(event);
        break;
    case MPV_EVENT_START_FILE:
        if (m_medium != nullptr) {
            const auto& started = *static_cast<const mpv_event_start_file*>(event.data);
            m_medium->begun = started.playlist_entry_id == m_medium->entry;
        }
        break;
    case MPV_EVENT_HOOK:
        handleHook(static_cast<const mpv_event_hook*>(event.data)->id);
        break;
    case MPV_EVENT_PLAYBACK_RESTART:
        handleRestart();
        break;
    case MPV_EVENT_END_FILE:
        handleEndOfFile(*static_cast<const mpv_event_end_file*>(event.data));
        break;
    case MPV_EVENT_PROPERTY_CHANGE:
        handleProperty(*static_cast<const mpv_event_property*>(event.data));
        break;
    case MPV_EVENT_CLIENT_MESSAGE:
        handleMessage(*static_cast<const mpv_event_client_message*>(event.data));
        break;
    default:
        break;
    }
}

// mpv's number for what it has been given.
void Player::handleReply(const mpv_event& event)
{
    if (m_medium == nullptr || event.reply_userdata != m_medium->number) {
        return;
    }
    const mpv_node& result = static_cast<const mpv_event_command*>(event.data)->result;
    for (int i = 0; event.error >= 0 && result.format == MPV_FORMAT_NODE_MAP && i < result.u.list->num; ++i) {
        if (std::strcmp(result.u.list->keys[i], "playlist_entry_id") == 0) {
            m_medium->entry = result.u.list->values[i].u.int64;
        }
    }
}

void Player::handleHook(std::uint64_t hook)
{
    if (m_medium == nullptr || !m_medium->begun) {
        mpv_hook_continue(&m_mpv.handle(), hook); // of a file that is not wanted any more
        return;
    }
    m_medium->hook = hook;
    continueLoading();
}

void Player::handleRestart()
{
    if (m_medium == nullptr || !m_medium->begun || !m_medium->released) {
        return;
    }
    if (!m_medium->loaded) {
        becomeLoaded();
    } else if (m_medium->winding) {
        const double landed = m_mpv.number("time-pos", 0);
        m_medium->landsAgain = landed == std::exchange(m_medium->landed, landed);
    } else if (!m_medium->isPhoto()) {
        arrive();
    }
}

// A jump that was asked for is told wherever it led to, and the place where winding has ended unless it has been told.
void Player::arrive()
{
    m_medium->leavesJumps = m_medium->leavesJumps && m_mpv.flag("seeking");
    m_medium->nextTelling = Clock::now();
    if (std::exchange(m_medium->sought, false)) {
        m_medium->toldSecond = -1;
    }
    updatePosition(m_mpv.number("time-pos", m_medium->position));
    tellText();
}

void Player::becomeLoaded()
{
    m_medium->loaded = true;
    if (m_output.window && !hasPicture()) {
        end({PlayerEnded::Reason::LoadFailed, kNoDisplay, 0});
        return;
    }
    m_medium->facts = currentFacts();
    tell(PlayerLoaded{m_medium->facts});
    if (m_medium->isPhoto()) {
        return;
    }
    updatePictures();
    updatePosition(m_mpv.number("time-pos", 0));
    tellText();
    if (m_mpv.flag("eof-reached")) {
        finish();
    }
}

void Player::handleEndOfFile(const mpv_event_end_file& ended)
{
    if (m_medium == nullptr || ended.playlist_entry_id != m_medium->entry) {
        return;
    }
    if (m_medium->file != nullptr && m_medium->file->error() != 0) {
        end(readFailure(*m_medium->file));
    } else if (m_medium->loaded) {
        finish();
    } else if (m_output.window && !hasPicture()) {
        end({PlayerEnded::Reason::LoadFailed, kNoDisplay, 0});
    } else {
        const char* const why = ended.error < 0 ? mpv_error_string(ended.error) : "It holds nothing that plays.";
        end({PlayerEnded::Reason::LoadFailed, std::string("The file cannot be played: ") + why, 0});
    }
}

// Whether mpv shows what there is to be shown.
bool Player::hasPicture() const
{
    const bool isExpected = m_medium->prepared && m_medium->prepared->probed.canShow;
    return !isExpected || !m_mpv.text("current-vo").empty();
}

void Player::handleProperty(const mpv_event_property& property)
{
    if (m_medium == nullptr || !m_medium->loaded || m_medium->isPhoto()) {
        return;
    }
    const std::string name = property.name;
    if (name == "time-pos") {
        if (property.format == MPV_FORMAT_DOUBLE && !m_medium->winding && !m_medium->leavesJumps) {
            updatePosition(*static_cast<const double*>(property.data));
        }
    } else if (name == "sub-text") {
        tellText();
    } else if (name == "eof-reached") {
        if (m_mpv.flag("eof-reached")) {
            reachEnd();
        }
    } else {
        updateFacts();
    }
}

void Player::handleMessage(const mpv_event_client_message& message)
{
    if (m_medium != nullptr && message.num_args == 2 && std::strcmp(message.args[0], "key") == 0) {
        tell(PlayerKey{message.args[1]});
    }
}

// What becomes of what plays.

MediaFacts Player::currentFacts() const
{
    const ProbedMedia& probed = m_medium->prepared->probed;
    MediaFacts facts = probed.facts;
    const std::string gamma = m_mpv.text("video-params/gamma");
    facts.video.hdr = facts.video.hdr || gamma == "pq" || gamma == "hlg";
    facts.audioTrack = static_cast<int>(m_mpv.number("aid", 0));
    for (const ProbedAudio& audio : probed.audio) {
        facts.audioTracks.push_back(audio.track);
        if (audio.track.id == facts.audioTrack) {
            facts.audio = audio.facts;
        }
    }
    const int wanted = m_medium->options.audioTrack;
    facts.audioUnsupported = facts.audioTrack == 0 && (facts.audioUnsupported || wanted > 0);
    facts.subtitleTrack = static_cast<int>(m_mpv.number("sid", 0));
    for (const Track& track : subtitleTracks()) {
        facts.subtitleTracks.push_back(track.media);
        if (track.media.id == facts.subtitleTrack) {
            facts.subtitle = track.media.codec;
        }
    }
    return facts;
}

void Player::updateFacts()
{
    MediaFacts facts = currentFacts();
    if (facts.audioTrack != m_medium->facts.audioTrack || facts.subtitleTrack != m_medium->facts.subtitleTrack) {
        m_medium->facts = std::move(facts);
        tell(PlayerFactsChanged{m_medium->facts});
        updatePictures();
    }
}

// Reads the pictures of the subtitle track that is chosen, if it has such. None are shown while winding by jumps.
void Player::updatePictures()
{
    hidePicture();
    if (m_medium->winding) {
        return;
    }
    for (const Track& track : subtitleTracks()) {
        if (track.media.id == m_medium->facts.subtitleTrack && isPictureSubtitle(track.media.codec)) {
            const VideoFacts& video = m_medium->facts.video;
            m_medium->pictures = std::make_unique<SubtitlePictures>(
                PictureTrack{track.file, track.stream, track.media.external, video.width, video.height},
                [this, mailbox = m_mailbox, number = m_medium->number](PlayerSubtitlePicture picture) {
                    auto shown = std::make_shared<PlayerSubtitlePicture>(std::move(picture));
                    mailbox->post([this, number, shown] { showPicture(number, std::move(*shown)); });
                });
            m_medium->pictures->moveTo(subtitlePosition());
        }
    }
}

void Player::showPicture(std::uint64_t number, PlayerSubtitlePicture picture)
{
    if (m_medium == nullptr || m_medium->number != number || m_medium->pictures == nullptr) {
        return;
    }
    m_medium->showsPicture = !picture.png.empty();
    tell(std::move(picture));
}

void Player::hidePicture()
{
    m_medium->pictures.reset();
    if (std::exchange(m_medium->showsPicture, false)) {
        tell(PlayerSubtitlePicture());
    }
}

double Player::subtitlePosition() const
{
    constexpr double kMilliseconds = 1000;
    return m_medium->position - m_medium->options.subtitleDelay / kMilliseconds;
}

double Player::position() const
{
    if (!m_medium->winding) {
        return m_medium->position;
    }
    const double length = m_medium->prepared->probed.facts.duration;
    const double position = m_medium->winding->position(Clock::now());
    return length > 0 ? std::min(position, length) : position;
}

void Player::updatePosition(double seconds)
{
    m_medium->position = std::max(seconds, 0.0);
    const long second = std::lround(std::floor(m_medium->position));
    const Clock::time_point now = Clock::now();
    const bool isDue = second != m_medium->toldSecond && now >= m_medium->nextTelling;
    if (isDue || m_medium->toldSecond < 0) {
        m_medium->toldSecond = second;
        m_medium->nextTelling = now + kTelling;
        tell(PlayerPosition{m_medium->position});
    }
    if (m_medium->pictures != nullptr) {
        m_medium->pictures->moveTo(subtitlePosition());
    }
}

// The pictures that winding jumps to are not where it is, so their texts are not told.
void Player::tellText()
{
    std::string text = m_medium->winding || m_medium->leavesJumps ? "" : m_mpv.text("sub-text");
    if (text != m_medium->toldText) {
        m_medium->toldText = text;
        tell(PlayerSubtitleText{std::move(text)});
    }
}

// While winding, the clock says whether it is the end of the medium, unless nobody knows how long that is.
void Player::reachEnd()
{
    const std::optional<Winding>& winding = m_medium->winding;
    if (!winding) {
        finish();
    } else if (!winding->isBackwards() && m_medium->prepared->probed.facts.duration <= 0) {
        m_medium->winding.reset();
        m_medium->position = m_mpv.number("time-pos", m_medium->position);
        finish();
    }
}

// Reads that failed, and files that lack their rest, end like any other for mpv.
void Player::finish()
{
    const double length = m_medium->prepared->probed.certainLength;
    PlayerEnded ended = {PlayerEnded::Reason::Finished, "", m_medium->position};
    if (m_medium->file != nullptr && m_medium->file->error() != 0) {
        ended = readFailure(*m_medium->file);
    } else if (!m_medium->winding && isWellBefore(m_medium->position, length)) {
        ended = {PlayerEnded::Reason::Incomplete,
                 "The file is incomplete: it ends at " + clockTime(m_medium->position) + " of " + clockTime(length) + ".",
                 0};
    }
    end(std::move(ended));
}

void Player::readFailed(std::uint64_t number)
{
    if (m_medium != nullptr && m_medium->number == number && m_medium->file != nullptr) {
        end(readFailure(*m_medium->file));
    }
}

void Player::end(PlayerEnded ended)
{
    ended.position = position();
    tell(std::move(ended));
    clear();
}

void Player::clear()
{
    if (m_medium == nullptr) {
        return;
    }
    m_mpv.commandLater({"stop"});
    if (m_drawer != nullptr) {
        m_drawer->forgetOutputs();
    }
    if (m_medium->hook != 0) {
        mpv_hook_continue(&m_mpv.handle(), m_medium->hook);
    }
    for (const std::string& name : m_medium->names) {
        m_files.remove(name);
    }
    m_medium.reset();
}

void Player::closed(std::uint64_t number) const
{
    Json::Value json;
    json["tell"] = "closed";
    json["medium"] = static_cast<Json::UInt64>(number);
    sendMessage(m_channel, json);
}

// Time.

void Player::tick()
{
    const Clock::time_point now = Clock::now();
    if (m_medium == nullptr) {
        return;
    }
    if (now >= m_nextBeat) {
        beat();
    }
    if (m_medium->loaded && m_medium->file != nullptr && m_medium->file->stuckFor() > kNoAnswer) {
        end({PlayerEnded::Reason::ReadFailed, "The storage does not answer.", 0});
    } else if (m_medium->winding && now >= m_medium->nextJump) {
        jumpAlong();
    }
}

void Player::jumpAlong()
{
    const Clock::time_point now = Clock::now();
    const bool isStuck = m_medium->file->stuckFor() > kLateAnswer;
    m_medium->nextJump = now + kJump;
    m_medium->winding->hold(isStuck, now);
    if (isStuck) {
        return;
    }
    const double to = position();
    const double length = m_medium->prepared->probed.facts.duration;
    if (m_medium->winding->isBackwards() ? to <= 0 : length > 0 && to >= length) {
        m_medium->winding->isBackwards() ? windToStart() : end({PlayerEnded::Reason::Finished, "", 0});
        return;
    }
    if (!m_mpv.flag("seeking")) {
        // Jumps beyond the end all lead to the last key picture; an exact one finds the end.
        const bool isExact = length <= 0 && m_medium->landsAgain;
        m_mpv.commandLater({"seek", std::to_string(to).c_str(), isExact ? "absolute+exact" : "absolute+keyframes"});
    }
    updatePosition(to);
}

void Player::windToStart()
{
    playOn(0);
    tell(PlayerAtStart());
    m_medium->nextTelling = Clock::now();
    updatePosition(0);
}

// At the usual speed, unless it is to wait there.
void Player::playOn(double position)
{
    if (m_medium->winding) {
        m_medium->winding.reset();
        m_medium->position = position;
        m_medium->leavesJumps = m_mpv.flag("seekable");
        m_mpv.commandLater({"seek", std::to_string(position).c_str(), "absolute+exact"});
        updatePictures();
    }
    m_medium->windingSpeed = 1;
    m_mpv.set("speed", m_medium->options.speed);
    m_mpv.setFlag("mute", false);
    m_mpv.setFlag("pause", m_medium->paused);
}

int Player::pollTime() const
{
    if (m_medium == nullptr) {
        return -1;
    }
    const auto rest = m_medium->winding ? m_medium->nextJump - Clock::now() : Clock::duration(kTick);
    return static_cast<int>(std::max<std::int64_t>(std::chrono::ceil<std::chrono::milliseconds>(rest).count(), 0));
}

void Player::beat()
{
    m_nextBeat = Clock::now() + kBeat;
    Json::Value json;
    json["tell"] = "beat";
    sendMessage(m_channel, json);
}

void Player::tell(PlayerTold told) const
{
    const auto* const picture = std::get_if<PlayerSubtitlePicture>(&told);
    const UniqueFd png = picture != nullptr && !picture->png.empty() ? memoryFile(picture->png) : UniqueFd();
    const Json::Value json = toJson(PlayerEvent{m_medium->number, std::move(told)});
    if (png) {
        sendMessage(m_channel, json, {png.get()});
    } else {
        sendMessage(m_channel, json);
    }
}

} // namespace desktop
