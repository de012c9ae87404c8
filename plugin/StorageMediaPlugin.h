#pragma once

// What the plugin host resolves by name. Calling order: Plugin_Load, Server_PublishNotification_Callback, any number of
// Plugin_Execute, Plugin_Unload. Nothing guards against another order.

#include "platform/PluginHost.h"

#include <json/json.h>

#define PLUGIN_EXPORT __attribute__((visibility("default")))

extern "C" {

/// The plugin's header: points at its name.
PLUGIN_EXPORT extern const char* PLUGIN_HEADER_STORAGEMEDIA;

/// Creates the plugin and the command index; returns PLUGIN_HEADER_STORAGEMEDIA. Events may arrive before it returns.
PLUGIN_EXPORT const char* Plugin_Load();

/// Runs the command whose hash the member "CmdHash" of @p request holds; @p name is only logged. Returns the handler's
/// result, or false, the reply untouched, when no command has that hash.
PLUGIN_EXPORT bool Plugin_Execute(const char* name, Json::Value* request, Json::Value* reply);

/// Destroys the plugin. The event thread must have been stopped: the listener stays registered.
PLUGIN_EXPORT void Plugin_Unload();

/// Always 10.
PLUGIN_EXPORT int Plugin_GetId();

/// Logs @p id; always 1. Safe in any state.
PLUGIN_EXPORT int Plugin_RecvNotification(int id, void* data);

/// Gives the plugin the host's publish function. Call it straight after Plugin_Load: events are published through it.
PLUGIN_EXPORT void Server_PublishNotification_Callback(PublishNotificationCallback cb);

/// Logs @p p. Safe in any state.
PLUGIN_EXPORT void Server_NotificationToPlugin_Callback(void* p);

} // extern "C"
