#pragma once

#include "platform/PluginHost.h"

#include <json/json.h>

#include <memory>
#include <string>

namespace desktop {

/// The plugin's library, known by the names it exports and nothing else.
class PluginLibrary {
public:
    /// Loads @p file and finds its entry points. Throws std::runtime_error that says what is missing.
    explicit PluginLibrary(const std::string& file);

    const char* (*load)();
    bool (*execute)(const char* name, Json::Value* request, Json::Value* reply);
    void (*unload)();
    void (*setPublishCallback)(PublishNotificationCallback callback);

private:
    struct Close {
        void operator()(void* handle) const;
    };

    template <typename Function>
    void find(Function& function, const char* name);

    std::unique_ptr<void, Close> m_handle;
};

/// The plugin that was built or installed together with this program.
std::string defaultPluginFile();

} // namespace desktop
