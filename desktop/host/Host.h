#pragma once

#include "desktop/host/CommandQueue.h"
#include "desktop/host/PluginLibrary.h"
#include "desktop/host/RunningRequests.h"
#include "desktop/host/Subscription.h"

#include "desktop/boundary/DesktopMiddleware.h"

namespace desktop {

/// The plugin at work on the desktop for any number of clients: loaded, given its callback, fed with commands and events,
/// and unloaded in the order that its contract asks for. There is one host at a time.
///
/// Threads. Clients call from any thread. Commands run on the host's command thread, one at a time, in the order in which
/// they were queued. The plugin takes no lock, so the host takes turns: while a command runs no event is delivered.
///
/// Order. A command's reply is there before any subscriber gets a notification that the command leads to: a client that
/// waits for the reply and takes its updates afterwards sees them in this order. A ReadFailure that belongs to a command
/// that fails is queued before the reply is there.
///
/// Lifetimes. The plugin must outlive the host. Before the host is destroyed its clients must have stopped calling it;
/// close() lets them notice. A reply or a subscription may be kept longer.
class Host {
public:
    /// Loads @p plugin; @p settings says what the desktop is made of, its observers are the host's own. Events gather until
    /// start(), so that clients can subscribe before the first.
    Host(const PluginEntryPoints& plugin, DesktopSettings settings);
    ~Host() { close(); }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Begins to deliver events. Called once, by the owner.
    void start();

    /// Queues command @p name; "CmdHash" is added to @p request. Requests that the plugin cannot use, and commands that are
    /// not run because the host closes, are answered with an error.
    std::future<CommandReply> execute(std::string name, Json::Value request = Json::Value(Json::objectValue));

    /// Subscribes to all updates from now on, at most @p limit of them queued; see Subscription.
    SubscriptionPointer subscribe(std::size_t limit) { return m_subscribers->subscribe(limit); }

    bool isScreenOff() const;
    /// Switches the screen, as the remote control would; the subscribers get ScreenSwitched.
    void switchScreen(bool off);
    /// A picture of what the screen shows, @p width x @p height pixels large; one without pixels when it is off or shows
    /// nothing. Waits for two seconds at most.
    ScreenFrame takeScreen(int width, int height);
    /// Presses a key of the set; the subscribers get the notification that it leads to.
    void pressKey(SetKey key);

    /// Refuses the commands that are still queued, waits for the one that runs, delivers the events that are due, unloads
    /// the plugin and ends all subscriptions. Later commands are refused, later subscriptions have ended. Calling it again
    /// waits for the first call.
    void close();

private:
    static void publish(const char* source, const char* name, Json::Value& body);
    void publishUpdate(HostUpdate update);
    void publishEnd(std::optional<RequestEnded> request);
    void runCommand(QueuedCommand& command);
    CommandReply replyOf(QueuedCommand& command);
    void unload();

    static Host* s_running;

    const PluginEntryPoints m_plugin;
    const std::shared_ptr<SubscriberList> m_subscribers; ///< shared with threads that may outlive the host
    bool m_commandRuns = false; ///< this and the next two are used only while the delivery of events is held
    std::vector<HostUpdate> m_publishedByCommand;
    RunningRequests m_requests;
    std::once_flag m_closing;
    CommandQueue m_commands; ///< last: its thread uses the others
};

} // namespace desktop
