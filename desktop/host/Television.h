#pragma once

#include "desktop/host/PendingAnswers.h"
#include "desktop/host/PluginLibrary.h"

#include "desktop/boundary/DesktopMiddleware.h"

namespace desktop {

/// What a television is made of.
struct TelevisionSettings {
    std::string pluginFile;
    DesktopSettings desktop;
    /// Gets every notification, on the event thread.
    std::function<void(const std::string& source, const std::string& name, const Json::Value& body)> notified;
};

/// The plugin at work on the desktop: loaded, given its callback and fed with events, and unloaded in the order that its
/// contract asks for. One at a time. Operations are called on one thread.
class Television {
public:
    /// Throws std::runtime_error when the plugin cannot be loaded.
    explicit Television(TelevisionSettings settings);
    ~Television();
    Television(const Television&) = delete;
    Television& operator=(const Television&) = delete;

    /// Runs @p command; whether it succeeded. Lets the exceptions of a request that it cannot convert pass.
    bool execute(const std::string& command, Json::Value request, Json::Value& reply);
    PendingAnswers& answers() { return m_answers; }

private:
    static void publish(const char* source, const char* event, Json::Value& body);

    static Television* s_running;

    TelevisionSettings m_settings;
    PendingAnswers m_answers;
    PluginLibrary m_plugin;
};

} // namespace desktop
