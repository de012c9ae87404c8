#include "desktop/cli/PlayCommand.h"

#include "desktop/cli/ErrorMessage.h"
#include "desktop/cli/JsonLines.h"
#include "desktop/cli/PlayKeys.h"
#include "desktop/cli/PlayProgress.h"
#include "desktop/cli/ScreenPicture.h"
#include "desktop/cli/TerminalKeys.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <utility>

namespace desktop {

namespace {

constexpr const char* kLoaded = "storagemedia.media.loadsuccess";
constexpr const char* kPhotoLoaded = "storagemedia.media.photo.loadsuccess";
constexpr const char* kLoadFailed = "storagemedia.media.loadfailed";
constexpr const char* kPlayFailed = "storagemedia.media.playfailed";
constexpr const char* kAudioUnsupported = "storagemedia.audio.notsupport";
constexpr const char* kVideoUnsupported = "storagemedia.media.notsupport";

constexpr std::chrono::milliseconds kNoticeTime(1500);
constexpr int kTerminalTime = 500; // milliseconds between looks whether the terminal has become this program's

// What comes when nothing more is played.
constexpr const char* kEnds[] = {"storagemedia.video.music.playend", "storagemedia.photo.playend",
                                 "storagemedia.movie.stopsucc", "storagemedia.music.stopsucc",
                                 "storagemedia.photo.stopsucc"};

bool isSet(const char* variable)
{
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

/// The first of "screen-0001.jpg" and so on that is free in the working folder.
std::string freePictureName()
{
    for (unsigned int number = 1;; ++number) {
        std::array<char, 32> name = {};
        std::snprintf(name.data(), name.size(), "screen-%04u.jpg", number);
        std::error_code ignored;
        if (!std::filesystem::exists(std::filesystem::symlink_status(name.data(), ignored))) {
            return name.data();
        }
    }
}

/// One run of the play command.
class PlayCommand {
public:
    PlayCommand(Session& session, HostClient& client, const PlayArguments& options, PlayTarget target, Output& output,
                const Interrupts& interrupts)
        : m_session(session)
        , m_client(client)
        , m_options(options)
        , m_target(std::move(target))
        , m_output(output)
        , m_interrupts(interrupts)
        , m_commands(m_target.kind, [this](const std::string& command, const Json::Value& request, Json::Value& reply) {
            return m_session.execute(command, request, reply);
        })
    {
    }

    void run();

private:
    bool start();
    Json::Value playRequest() const;
    std::optional<bool> wantsToResume();
    std::optional<bool> askToResume();
    void follow();
    std::vector<std::string> waitForKeys(int updates);
    void stopForAWhile();
    void press(const std::string& key);
    void takePicture();
    void quit();
    void showNotice(std::string notice);
    int noticeTime() const;
    int waitTime() const;
    void handle(const HostUpdate& update);
    void handle(const Notification& notification);
    void handleLoaded();
    void handleLoadFailure(const Json::Value& body);
    void handleFailure(const std::string& path, const std::string& reason);
    void noteUnsupported(const Notification& notification);
    void showNote();
    bool playsAll() const { return m_options.all || m_options.mode || m_target.isWholeList; }
    bool isWatched();

    Session& m_session;
    HostClient& m_client;
    const PlayArguments& m_options;
    const PlayTarget m_target;
    Output& m_output;
    const Interrupts& m_interrupts;
    TerminalKeys m_keys;
    PlayKeys m_commands;
    PlayProgress m_progress{m_target};
    std::string m_notice; ///< shown in place of the progress until then
    std::chrono::steady_clock::time_point m_noticeEnd;
    std::string m_note;    ///< of what cannot be decoded, to be printed unless it is why the medium fails
    bool m_isFirst = true; ///< no medium has been loaded yet
    bool m_ended = false;
};

void PlayCommand::run()
{
    if (start()) {
        follow();
    }
}

bool PlayCommand::start()
{
    if (m_options.startAt && m_target.kind == FILE_TYPE_PHOTO) {
        m_session.fail(m_options.path, "A photo has no time to begin at");
        return false;
    }
    Json::Value reply;
    if (m_options.mode) {
        Json::Value order;
        order["type"] = m_target.kind;
        order["mode"] = *m_options.mode;
        if (!m_session.query("storagemedia.set.player.mode", order, m_options.path, reply)) {
            return false;
        }
    }
    const auto resume = wantsToResume();
    if (!resume) {
        return false;
    }
    Json::Value request = playRequest();
    request["resume"] = *resume;
    return m_session.query("storagemedia.media.playfile", request, m_options.path, reply);
}

Json::Value PlayCommand::playRequest() const
{
    Json::Value request;
    request["dirpath"] = m_target.list;
    request["index"] = m_target.index;
    request["type"] = m_target.kind;
    request["playall"] = playsAll();
    return request;
}

// Nothing when the user does not want to play any more.
std::optional<bool> PlayCommand::wantsToResume()
{
    Json::Value reply;
    if (m_options.resume || m_options.fromStart || m_options.startAt || m_keys.fd() < 0 ||
        !m_session.progress().isTerminal()) {
        return m_options.resume;
    }
    const bool remembered = m_session.execute("storagemedia.video.resumeable", playRequest(), reply);
    return remembered && reply["resume"].asBool() ? askToResume() : false;
}

std::optional<bool> PlayCommand::askToResume()
{
    while (!m_session.stopped() && m_keys.fd() >= 0) {
        m_session.progress().show("Go on where it was left? [Y/n] ");
        for (const std::string& key : waitForKeys(-1)) {
            if (key == "y" || key == "Y" || key == "ENTER") {
                return true;
            }
            if (key == "n" || key == "N") {
                return false;
            }
            if (playActionOf(key, m_target.kind) == PlayAction::Quit) {
                return std::nullopt;
            }
        }
    }
    return std::nullopt;
}

void PlayCommand::follow()
{
    while (!m_ended && !m_session.stopped()) {
        if (m_progress.isLoaded()) {
            m_session.progress().show(noticeTime() > 0 ? m_notice : m_progress.line(m_commands.subtitlesAreShown()));
        }
        for (const std::string& key : waitForKeys(m_client.fd())) {
            press(key);
        }
        m_client.takeUpdates([this](const HostUpdate& update) { handle(update); });
        if (m_client.isCutOff()) {
            m_session.fail(m_options.path, "Notifications have been dropped: they were not read in time");
            return;
        }
    }
    showNote();
    m_session.progress().clear();
}

// Waits for keys of the terminal, or for what else the command is to look at: @p updates, or an interrupt.
std::vector<std::string> PlayCommand::waitForKeys(int updates)
{
    std::array<pollfd, 4> waits = {
        {{updates, POLLIN, 0}, {m_interrupts.fd(), POLLIN, 0}, {m_keys.fd(), POLLIN, 0}, {m_keys.signalFd(), POLLIN, 0}}};
    if (poll(waits.data(), waits.size(), waitTime()) < 0) {
        return {};
    }
    if (m_keys.isWithoutTerminal()) {
        m_keys.takeTerminal();
    }
    if (waits[3].revents != 0 && m_keys.isToStop()) {
        stopForAWhile();
    }
    return waits[2].revents != 0 ? m_keys.take() : std::vector<std::string>();
}

// What plays waits meanwhile.
void PlayCommand::stopForAWhile()
{
    const bool plays = m_progress.isLoaded() && m_progress.speed() != 0;
    if (plays) {
        m_commands.press(PlayAction::PlayOrPause, 1);
    }
    m_session.progress().clear();
    m_keys.stop();
    if (plays) {
        m_commands.press(PlayAction::PlayOrPause, 0);
    }
}

void PlayCommand::press(const std::string& key)
{
    const auto action = playActionOf(key, m_target.kind);
    if (!action) {
        return;
    }
    switch (*action) {
    case PlayAction::Quit:
        return quit();
    case PlayAction::TakePicture:
        return takePicture();
    case PlayAction::Help:
        return m_session.progress().showAbove(playKeysHelp(m_target.kind));
    default:
        showNotice(m_commands.press(*action, m_progress.speed()));
    }
}

void PlayCommand::takePicture()
{
    const std::string file = freePictureName();
    const int failed = writeScreenPicture(m_client.host(), kUsualScreenWidth, kUsualScreenHeight, file);
    if (failed != 0) {
        m_session.fail(file, systemErrorText(failed));
    } else {
        showNotice(file);
    }
}

// The end is there with the notification that it has stopped; what does not play any more has none.
void PlayCommand::quit()
{
    Json::Value request;
    request["type"] = m_target.kind;
    Json::Value reply;
    m_ended = !m_session.execute("storagemedia.media.stopfile", request, reply) || m_ended;
}

// An empty one ends the one before.
void PlayCommand::showNotice(std::string notice)
{
    m_noticeEnd = std::chrono::steady_clock::now() + (notice.empty() ? std::chrono::milliseconds(0) : kNoticeTime);
    m_notice = std::move(notice);
}

// How long it is still shown, in milliseconds; 0 when it is not.
int PlayCommand::noticeTime() const
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_noticeEnd - std::chrono::steady_clock::now());
    return static_cast<int>(std::max(left.count(), std::chrono::milliseconds::rep(0)));
}

// As poll(2) has it, until there is something to do without being woken.
int PlayCommand::waitTime() const
{
    if (noticeTime() > 0) {
        return noticeTime();
    }
    return m_keys.isWithoutTerminal() ? kTerminalTime : -1;
}

void PlayCommand::handle(const HostUpdate& update)
{
    if (const auto* notification = std::get_if<Notification>(&update)) {
        handle(*notification);
    } else if (const auto* pressed = std::get_if<KeyPressed>(&update)) {
        press(pressed->key);
    }
}

void PlayCommand::handle(const Notification& notification)
{
    const std::string& name = notification.name;
    if (m_options.json) {
        m_output.write(jsonLine(notificationLine(notification)));
    }
    m_progress.take(notification);
    if (name == kLoaded || name == kPhotoLoaded) {
        handleLoaded();
    } else if (name == kLoadFailed) {
        handleLoadFailure(notification.body);
    } else if (name == kPlayFailed) {
        handleFailure(m_progress.path(), "It could not be played to its end");
    } else if (name == kAudioUnsupported || name == kVideoUnsupported) {
        noteUnsupported(notification);
        return;
    } else if (std::find(std::begin(kEnds), std::end(kEnds), name) != std::end(kEnds)) {
        m_ended = true;
    }
    showNote();
}

// A photo by itself has no end; it is over at once when nobody can see it.
void PlayCommand::handleLoaded()
{
    if (std::exchange(m_isFirst, false) && m_options.startAt && m_progress.endsBefore(*m_options.startAt)) {
        m_note = ": It is not that long; it plays from its start";
    }
    if (!m_options.json && !m_session.progress().isTerminal()) {
        m_output.write(m_progress.report());
    }
    if (m_target.kind == FILE_TYPE_PHOTO && !playsAll() && !isWatched()) {
        quit();
    }
}

void PlayCommand::handleLoadFailure(const Json::Value& body)
{
    const std::string reason = body["reason"].asString();
    m_note.clear();
    handleFailure(body["path"].asString(), reason.empty() ? "It cannot be played" : reason);
}

// What follows, or the end of the run, comes by itself, unless the stick has gone.
void PlayCommand::handleFailure(const std::string& path, const std::string& reason)
{
    m_session.fail(path, reason);
    m_ended = m_ended || !playsAll() || m_session.isOnPulledStick(path);
}

void PlayCommand::noteUnsupported(const Notification& notification)
{
    if (notification.name == kVideoUnsupported) {
        m_note = ": Its picture cannot be decoded";
        return;
    }
    const std::string codec = notification.body["codec"].asString();
    m_note = ": Its sound cannot be decoded" + (codec.empty() ? "" : " (" + codec + ")");
}

void PlayCommand::showNote()
{
    if (!m_note.empty()) {
        m_session.progress().clear();
        printError(m_progress.path() + m_note);
        m_note.clear();
    }
}

bool PlayCommand::isWatched()
{
    return playerOutputOf(m_options, m_output).window || m_keys.fd() >= 0;
}

} // namespace

PlayerOutput playerOutputOf(const PlayArguments& options, const Output& output)
{
    const bool hasDisplay = isSet("DISPLAY") || isSet("WAYLAND_DISPLAY");
    PlayerOutput player;
    player.window = options.window.value_or(hasDisplay && output.isTerminal());
    player.sound = !options.silent;
    return player;
}

void runPlay(Session& session, HostClient& client, const PlayArguments& options, Output& output,
             const Interrupts& interrupts)
{
    if (!session.enter()) {
        return;
    }
    if (auto target = findPlayTarget(session, options.path)) {
        PlayCommand(session, client, options, std::move(*target), output, interrupts).run();
    }
}

} // namespace desktop
