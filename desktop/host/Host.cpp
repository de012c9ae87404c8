#include "desktop/host/Host.h"

#include "desktop/host/CommandNames.h"

#include "platform/SocMiddleware.h"

namespace desktop {

namespace {

DesktopSettings observedBy(const std::shared_ptr<SubscriberList>& subscribers, DesktopSettings settings)
{
    settings.observer.progress = [subscribers](const std::string& directory, std::size_t entries) {
        subscribers->publish(FolderProgress{directory, entries});
    };
    settings.observer.failed = [subscribers](const std::string& path, const std::string& reason) {
        subscribers->publish(ReadFailure{path, reason});
    };
    settings.screenSwitched = [subscribers](bool off) { subscribers->publish(ScreenSwitched{off}); };
    settings.keyPressed = [subscribers](const std::string& key) { subscribers->publish(KeyPressed{key}); };
    return settings;
}

} // namespace

Host* Host::s_running = nullptr;

Host::Host(const PluginEntryPoints& plugin, DesktopSettings settings)
    : m_plugin(plugin)
    , m_subscribers(std::make_shared<SubscriberList>())
    , m_commands([this](QueuedCommand& command) { runCommand(command); })
{
    s_running = this;
    settings.requestDropped = [this](BackgroundRequest kind) { publishEnd(m_requests.dropped(kind)); };
    DesktopMiddleware::instance().open(observedBy(m_subscribers, std::move(settings)));
    m_plugin.load();
    m_plugin.setPublishCallback(&Host::publish);
}

void Host::start()
{
    DesktopMiddleware::instance().startEvents();
}

std::future<CommandReply> Host::execute(std::string name, Json::Value request)
{
    return m_commands.add(std::move(name), std::move(request));
}

bool Host::isScreenOff() const
{
    int off = 0;
    SocMiddleware::getInstance()->getSystemMgr()->getScreenStatus(&off);
    return off != 0;
}

void Host::switchScreen(bool off)
{
    SocMiddleware::getInstance()->getSystemMgr()->ScreenOff(off ? 1 : 0);
}

ScreenFrame Host::takeScreen(int width, int height)
{
    return isScreenOff() ? ScreenFrame() : DesktopMiddleware::instance().takeScreen(width, height);
}

void Host::pressKey(SetKey key)
{
    DesktopMiddleware::instance().pressKey(key);
}

void Host::close()
{
    std::call_once(m_closing, [this] {
        m_commands.close();
        unload();
        m_subscribers->close();
    });
}

void Host::unload()
{
    DesktopMiddleware::instance().close(); // the event thread has ended before the plugin goes
    m_plugin.unload();
    s_running = nullptr;
}

void Host::runCommand(QueuedCommand& command)
{
    const auto turn = DesktopMiddleware::instance().events().holdDelivery();
    m_commandRuns = true;
    CommandReply reply = replyOf(command);
    m_commandRuns = false;
    command.reply.set_value(std::move(reply));
    for (HostUpdate& update : std::exchange(m_publishedByCommand, {})) {
        m_subscribers->publish(std::move(update));
    }
}

CommandReply Host::replyOf(QueuedCommand& command)
{
    CommandReply reply;
    try {
        command.request["CmdHash"] = commandHash(command.name);
        reply.result = m_plugin.execute(command.name.c_str(), &command.request, &reply.body);
        reply.request = reply.result ? m_requests.accepted(command.name, command.request) : 0;
    } catch (const std::exception& unusable) {
        reply.error = std::string("The request cannot be used: ") + unusable.what();
    }
    return reply;
}

// On the event thread, or on the command thread while a command runs: either way nobody else is in the plugin.
void Host::publish(const char* source, const char* name, Json::Value& body)
{
    const auto ended = s_running->m_requests.published(source, name, body);
    s_running->publishUpdate(Notification{source, name, std::move(body)});
    s_running->publishEnd(ended);
}

void Host::publishUpdate(HostUpdate update)
{
    if (m_commandRuns) {
        m_publishedByCommand.push_back(std::move(update));
    } else {
        m_subscribers->publish(std::move(update));
    }
}

void Host::publishEnd(std::optional<RequestEnded> request)
{
    if (request) {
        publishUpdate(std::move(*request));
    }
}

} // namespace desktop
