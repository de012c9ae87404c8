#pragma once

#include <json/json.h>

/// The host's publish function. @p source is the plugin's name for a broadcast or the requester's channel; @p event names
/// the notification. Called on the command thread and on the event thread; @p body may be moved from.
using PublishNotificationCallback = void (*)(const char* source, const char* event, Json::Value& body);
