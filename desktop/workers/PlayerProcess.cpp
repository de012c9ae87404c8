#include "desktop/workers/PlayerProcess.h"

#include "desktop/base/ProgramFiles.h"
#include "desktop/workers/PlayerMessages.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <exception>
#include <limits>
#include <system_error>
#include <utility>

namespace desktop {

namespace {

constexpr int kMaxFrameSide = 4096;           // pixels
constexpr std::int64_t kMaxPicture = 4 << 20; // bytes of a subtitle's picture
constexpr std::size_t kMaxSubtitleFiles = 32; // more than anyone has beside a video
constexpr int kMaxEvents = 500;               // a second: more than subtitles change, and more than wait in the channel
constexpr const char* kDied = "The player has stopped.";
constexpr const char* kSilent = "The player does not answer any more.";
constexpr const char* kTooMany = "The player tells more than it can have to tell.";
constexpr const char* kTooLong = "The file took too long to open.";

PlayerSettings completed(PlayerSettings settings)
{
    if (settings.program.empty()) {
        settings.program = programFile(PLAYER_BUILT, PLAYER_INSTALLED);
    }
    return settings;
}

std::vector<std::string> argumentsFor(const PlayerOutput& output)
{
    std::vector<std::string> arguments;
    if (output.window) {
        arguments.emplace_back("--window");
    }
    if (output.sound) {
        arguments.emplace_back("--sound");
    }
    return arguments;
}

// In the background: a process that the kernel keeps, as one that reads from a dead stick, takes its time to end.
void endInBackground(std::unique_ptr<WorkerProcess> process)
{
    if (process != nullptr) {
        std::thread([process = std::move(process)]() mutable { process.reset(); }).detach();
    }
}

std::size_t bytesOf(int width, int height)
{
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
}

// A subtitle's picture; empty when @p fd holds none, or is not a file in memory.
std::string pngIn(int fd)
{
    static constexpr char kBegin[] = "\x89PNG\r\n\x1A\n";
    struct stat status = {};
    const bool isInMemory = fcntl(fd, F_GET_SEALS) >= 0; // one on a stick might never be read
    if (!isInMemory || fstat(fd, &status) != 0 || status.st_size <= 0 || status.st_size > kMaxPicture) {
        return "";
    }
    std::string png(static_cast<std::size_t>(status.st_size), '\0');
    const ssize_t got = TEMP_FAILURE_RETRY(pread(fd, png.data(), png.size(), 0));
    return got == status.st_size && png.starts_with(kBegin) ? png : "";
}

Json::Value messageFor(std::uint64_t number, const char* what)
{
    Json::Value message;
    message["do"] = what;
    message["medium"] = static_cast<Json::UInt64>(number);
    return message;
}

bool sendSubtitle(int channel, std::uint64_t number, const SubtitleFile& subtitle)
{
    Json::Value message = messageFor(number, "subtitle");
    message["name"] = subtitle.name;
    message["language"] = subtitle.language;
    return subtitle.pictures ? sendMessage(channel, message, {subtitle.fd.get(), subtitle.pictures.get()})
                             : sendMessage(channel, message, {subtitle.fd.get()});
}

} // namespace

PlayerProcess::PlayerProcess(PlayerSettings settings, Handler handle)
    : m_settings(completed(std::move(settings)))
    , m_handle(std::move(handle))
    , m_thread([this] { work(); })
{
}

PlayerProcess::~PlayerProcess()
{
    m_wanted = 0;
    {
        const LockGuard lock(m_mutex);
        m_stopped = true;
    }
    m_wakeup.raise();
    m_thread.join();
}

// What is called on any thread.

void PlayerProcess::load(PlayerMedium medium)
{
    m_wanted = medium.number;
    auto shared = std::make_shared<PlayerMedium>(std::move(medium));
    post([this, shared] { begin(shared); });
}

void PlayerProcess::unload()
{
    m_wanted = 0;
    post([this] { letGo(); });
}

void PlayerProcess::pause(bool paused)
{
    command("pause", "paused", paused);
}

void PlayerProcess::wind(int speed)
{
    command("wind", "speed", speed);
}

void PlayerProcess::seek(double seconds)
{
    command("seek", "seconds", seconds);
}

void PlayerProcess::setOptions(const PlayerOptions& options)
{
    const std::uint64_t number = m_wanted;
    post([this, number, options] {
        if (m_playing && m_playing->number == number && m_playing->medium != nullptr) {
            m_playing->medium->options = options; // for another process, should it come to that
        }
    });
    command("options", "options", toJson(options));
}

void PlayerProcess::takeFrame(int width, int height, FrameHandler handle)
{
    post([this, width, height, handle = std::move(handle)] { orderFrame(width, height, handle); });
}

void PlayerProcess::post(std::function<void()> work)
{
    const LockGuard lock(m_mutex);
    m_posted.push_back(std::move(work));
    m_wakeup.raise();
}

void PlayerProcess::command(const char* what, const char* key, const Json::Value& value)
{
    Json::Value message = messageFor(m_wanted, what);
    message[key] = value;
    post([this, message] {
        const bool isFor = m_playing && m_playing->number == message["medium"].asUInt64();
        if (isFor && !sendMessage(m_process->channel(), message)) {
            lose(kDied);
        }
    });
}

// The thread.

void PlayerProcess::work()
{
    startAhead();
    while (workPosted()) {
        wait();
        watchDeadlines();
    }
    for (const auto& [number, frame] : m_frames) {
        frame.handle({});
    }
    endProcess();
}

void PlayerProcess::startAhead()
try {
    if (m_settings.ahead) {
        start();
    }
} catch (const std::exception&) { // told with the next medium
}

// Whether to go on.
bool PlayerProcess::workPosted()
{
    m_wakeup.clear();
    std::deque<std::function<void()>> due;
    bool stopped = false;
    {
        const LockGuard lock(m_mutex);
        due.swap(m_posted);
        stopped = m_stopped;
    }
    for (const std::function<void()>& piece : due) {
        piece();
    }
    return !stopped;
}

void PlayerProcess::wait()
{
    std::array<pollfd, 2> waits = {
        {{m_wakeup.fd(), POLLIN, 0}, {m_process != nullptr ? m_process->channel() : -1, POLLIN, 0}}};
    const Clock::time_point deadline = nextDeadline();
    int time = -1;
    if (deadline != Clock::time_point::max()) {
        const auto rest = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        time = static_cast<int>(std::clamp<std::int64_t>(rest, 0, std::numeric_limits<int>::max()));
    }
    if (poll(waits.data(), waits.size(), time) > 0 && waits[1].revents != 0) {
        receive();
    }
}

PlayerProcess::Clock::time_point PlayerProcess::nextDeadline() const
{
    Clock::time_point next = Clock::time_point::max();
    if (m_playing) {
        next = m_playing->medium != nullptr ? m_playing->loadEnd : next;
        next = m_speaks ? std::min(next, m_heard + m_settings.silence) : next;
    }
    for (const auto& [number, end] : m_closing) {
        next = std::min(next, end);
    }
    for (const auto& [number, frame] : m_frames) {
        next = std::min(next, frame.end);
    }
    return next;
}

void PlayerProcess::watchDeadlines()
{
    const Clock::time_point now = Clock::now();
    watchFrames(now);
    watchClosing(now);
    if (m_playing && m_speaks && now >= m_heard + m_settings.silence) {
        lose(kSilent);
    } else if (m_playing && m_playing->medium != nullptr && now >= m_playing->loadEnd) {
        endProcess();
        endPlaying(PlayerEnded::Reason::LoadFailed, kTooLong);
    }
}

void PlayerProcess::watchFrames(Clock::time_point now)
{
    for (auto frame = m_frames.begin(); frame != m_frames.end();) {
        if (now < frame->second.end) {
            ++frame;
            continue;
        }
        const FrameHandler handle = std::move(frame->second.handle);
        frame = m_frames.erase(frame);
        handle({});
    }
}

// A process that does not let go of a medium waits for its file, and cannot play another one. One that plays again has been
// left with a thread that waits, which harms nobody.
void PlayerProcess::watchClosing(Clock::time_point now)
{
    const bool isLate =
        std::any_of(m_closing.begin(), m_closing.end(), [now](const auto& entry) { return now >= entry.second; });
    if (!isLate) {
        return;
    }
    if (m_playing && m_playing->medium == nullptr) {
        std::erase_if(m_closing, [now](const auto& entry) { return now >= entry.second; });
        return;
    }
    endProcess();
    if (m_playing) {
        sendMedium();
    } else {
        startAhead();
    }
}

// What plays.

void PlayerProcess::begin(std::shared_ptr<PlayerMedium> medium)
{
    if (medium->number != m_wanted) {
        return; // another one has come meanwhile, or none is wanted
    }
    const Clock::time_point now = Clock::now();
    expectClosing(m_settings.closing);
    for (auto& [number, end] : m_closing) {
        end = std::min(end, now + m_settings.closing);
    }
    const std::uint64_t number = medium->number;
    m_playing = Playing{number, std::move(medium), now + m_settings.load, 0, false, false};
    sendMedium();
}

void PlayerProcess::sendMedium()
try {
    const bool isNew = m_process == nullptr;
    if (isNew) {
        start();
    }
    if (!trySendMedium() && !isNew) { // it has died since the last one: that is not this one's fault
        start();
        trySendMedium();
    }
} catch (const std::exception& error) {
    endPlaying(PlayerEnded::Reason::PlayerLost, error.what());
}

bool PlayerProcess::trySendMedium()
{
    const PlayerMedium& medium = *m_playing->medium;
    const int channel = m_process->channel();
    for (std::size_t i = 0; i < medium.subtitles.size() && i < kMaxSubtitleFiles; ++i) {
        if (!sendSubtitle(channel, medium.number, medium.subtitles[i])) {
            return false;
        }
    }
    Json::Value message = messageFor(medium.number, "load");
    message["type"] = static_cast<int>(medium.type);
    message["start"] = medium.start;
    message["paused"] = medium.paused;
    message["options"] = toJson(medium.options);
    m_heard = Clock::now();
    return sendMessage(channel, message, {medium.fd.get()});
}

void PlayerProcess::letGo()
{
    m_memories.clear();
    if (!m_playing) {
        return;
    }
    expectClosing(m_settings.unloading);
    const Json::Value message = messageFor(m_playing->number, "unload");
    m_playing.reset();
    if (!sendMessage(m_process->channel(), message)) {
        endProcess();
    }
}

// The process is to let go of what plays within @p time.
void PlayerProcess::expectClosing(std::chrono::milliseconds time)
{
    if (m_playing && !m_playing->closed) {
        m_closing[m_playing->number] = Clock::now() + time;
    }
}

void PlayerProcess::orderFrame(int width, int height, FrameHandler handle)
{
    const bool isPossible = m_playing && m_playing->medium == nullptr && width > 0 && height > 0 && width <= kMaxFrameSide &&
                            height <= kMaxFrameSide;
    std::shared_ptr<PictureMemory> memory = isPossible ? memoryFor(width, height) : nullptr;
    if (memory == nullptr) {
        handle({});
        return;
    }
    Json::Value message = messageFor(m_playing->number, "frame");
    message["width"] = width;
    message["height"] = height;
    message["frame"] = m_lastFrame = m_lastFrame < std::numeric_limits<int>::max() ? m_lastFrame + 1 : 1;
    const bool sent = sendMessage(m_process->channel(), message, {memory->fd()});
    m_frames[m_lastFrame] = {width, height, std::move(memory), std::move(handle), Clock::now() + m_settings.frame};
    if (!sent) {
        lose(kDied);
    }
}

// Null when there is none.
std::shared_ptr<PictureMemory> PlayerProcess::memoryFor(int width, int height)
try {
    return m_memories.take(bytesOf(width, height));
} catch (const std::system_error&) {
    return nullptr;
}

void PlayerProcess::frameDrawn(const Json::Value& body)
{
    const auto found = m_frames.find(numberFromJson(body["frame"], 1, std::numeric_limits<int>::max()));
    if (found == m_frames.end()) {
        return; // nobody waits for it any more
    }
    const Frame frame = std::move(found->second);
    m_frames.erase(found);
    const bool isEmpty = !body["empty"].isBool() || body["empty"].asBool();
    frame.handle(isEmpty ? ScreenFrame() : ScreenFrame{frame.width, frame.height, m_memories.picture(frame.memory)});
}

// The process.

void PlayerProcess::start()
{
    endProcess();
    m_process = std::make_unique<WorkerProcess>(m_settings.program, argumentsFor(m_settings.output));
    // A process that has been stopped takes no messages; this end must not wait for it.
    fcntl(m_process->channel(), F_SETFL, fcntl(m_process->channel(), F_GETFL) | O_NONBLOCK);
    m_speaks = false;
}

void PlayerProcess::endProcess()
{
    endInBackground(std::exchange(m_process, nullptr));
    m_closing.clear();
}

void PlayerProcess::lose(const std::string& why)
{
    endProcess();
    endPlaying(PlayerEnded::Reason::PlayerLost, why);
}

// One that has died before it took notice of a medium has not died of it: another process gets it, once.
void PlayerProcess::died()
{
    if (!m_playing || m_playing->medium == nullptr || m_playing->answered) {
        lose(kDied);
        return;
    }
    m_playing->answered = true;
    endProcess();
    sendMedium();
}

void PlayerProcess::receive()
{
    std::optional<WorkerMessage> message = receiveMessage(m_process->channel());
    if (!message) {
        died();
        return;
    }
    m_speaks = true;
    m_heard = Clock::now();
    if (m_playing) {
        m_playing->answered = true;
    }
    handleMessage(std::move(*message));
}

void PlayerProcess::handleMessage(WorkerMessage message)
{
    const Json::Value& tells = message.body["tell"];
    if (tells == "frame") {
        frameDrawn(message.body);
    } else if (tells == "closed" && message.body["medium"].isUInt64()) {
        const std::uint64_t number = message.body["medium"].asUInt64();
        m_closing.erase(number);
        if (m_playing && m_playing->number == number) {
            m_playing->closed = true;
        }
    } else if (std::optional<PlayerEvent> event = eventFromJson(message.body)) {
        handleEvent(std::move(*event), message.files);
    }
}

void PlayerProcess::handleEvent(PlayerEvent event, const std::vector<UniqueFd>& files)
{
    if (!m_playing || event.medium != m_playing->number) {
        return; // late
    }
    if (isTooMany()) {
        lose(kTooMany);
        return;
    }
    if (std::holds_alternative<PlayerLoaded>(event.told)) {
        m_playing->medium.reset();
    } else if (const auto* const position = std::get_if<PlayerPosition>(&event.told)) {
        m_playing->position = position->seconds;
    } else if (auto* const picture = std::get_if<PlayerSubtitlePicture>(&event.told)) {
        picture->png = !files.empty() ? pngIn(files.front().get()) : "";
    } else if (std::holds_alternative<PlayerEnded>(event.told)) {
        expectClosing(m_settings.unloading);
        m_playing.reset();
    }
    if (event.medium == m_wanted) {
        m_handle(std::move(event));
    }
}

// One that a medium has taken over must not keep whoever listens from all else.
bool PlayerProcess::isTooMany()
{
    const Clock::time_point now = Clock::now();
    if (now - m_countedSince >= std::chrono::seconds(1)) {
        m_countedSince = now;
        m_events = 0;
    }
    return ++m_events > kMaxEvents;
}

void PlayerProcess::endPlaying(PlayerEnded::Reason reason, const std::string& text)
{
    if (!m_playing) {
        return;
    }
    const Playing playing = std::move(*m_playing);
    m_playing.reset();
    if (playing.number == m_wanted) {
        m_handle({playing.number, PlayerEnded{reason, text, playing.position}});
    }
}

PlayerFactory playerProcesses(const PlayerOutput& output)
{
    return [output](FileType type, MediaPlayer::Handler handle) -> std::unique_ptr<MediaPlayer> {
        PlayerSettings settings;
        settings.output = output;
        settings.output.window = output.window && type != FILE_TYPE_MUSIC;
        return std::make_unique<PlayerProcess>(std::move(settings), std::move(handle));
    };
}

} // namespace desktop
