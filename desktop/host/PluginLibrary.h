#pragma once

#include "platform/PluginHost.h"

#include <json/json.h>

#include <memory>
#include <string>

namespace desktop {

/// The functions of a plugin that its host calls.
struct PluginEntryPoints {
    const char* (*load)() = nullptr;
    bool (*execute)(const char* name, Json::Value* request, Json::Value* reply) = nullptr;
    void (*unload)() = nullptr;
    void (*setPublishCallback)(PublishNotificationCallback callback) = nullptr;
};

/// The plugin's library, known by the names it exports and nothing else.
class PluginLibrary {
public:
    /// Loads @p file and finds its entry points. Throws std::runtime_error that says what is missing.
    explicit PluginLibrary(const std::string& file);

    /// Valid as long as the library.
    const PluginEntryPoints& entryPoints() const { return m_entryPoints; }

private:
    struct Close {
        void operator()(void* handle) const;
    };

    template <typename Function>
    void find(Function& function, const char* name);

    std::unique_ptr<void, Close> m_handle;
    PluginEntryPoints m_entryPoints;
};

/// The plugin that was built or installed together with this program.
std::string defaultPluginFile();

} // namespace desktop
