#pragma once

#include "platform/PluginHost.h"

#include <json/json.h>

#include <string>
#include <vector>

/// One thing that is expected to happen, in its place among the others. Log lines are printed below their level only.
struct Happening {
    int level;            ///< printed or done while the log level is below it
    std::string function; ///< of a log line; empty: the scenario's own
    std::string text;
};

constexpr int kAtEveryLevel = 5;

using Journal = std::vector<Happening>;

Happening dbg(const std::string& message);
Happening info(const std::string& message);
Happening war(const std::string& message);
Happening err(const std::string& message);
/// A log line of another function than the scenario's.
Happening in(const std::string& function, Happening line);
/// Output that is no log line.
Happening printed(const std::string& text);
/// A call of the boundary or of libc.
Happening did(const std::string& call);
Happening readInt(const std::string& key, int before = 0);
Happening readUInt(const std::string& key, unsigned int before = 0);
Happening readBool(const std::string& key);
Happening readString(const std::string& key);
/// A fetch of the storage manager's handle.
Happening manager();
/// A change of one of the plugin's fields, by its name.
Happening changed(const std::string& field, const std::string& value);
Happening changed(const std::string& field, const char* value);
Happening changed(const std::string& field, int value);
Happening changed(const std::string& field, bool value);
Happening changed(const std::string& field, PublishNotificationCallback value);
/// The change of one text of request slot @p slot.
Happening slotChanged(int slot, const std::string& text, const std::string& value);
/// A notification, with its body as typed text.
Happening published(const std::string& source, const std::string& name, const std::string& body);
/// A notification with the plugin's name as source.
Happening broadcast(const std::string& name, const std::string& body);

/// One part of a journal after another.
Journal operator+(Journal first, const Journal& second);

/// @p journal as text at @p level, with @p function as the name of its lines.
std::string render(const Journal& journal, const std::string& function, int level);

/// @p journal with time and line number taken out of every log line: "[DBG][function]message". A message that repeats its
/// line's tag has "#" for the number: "[WAR][function]function-#, message".
std::string normalised(const std::string& journal);

/// @p callback as "%p" prints it.
std::string pointerText(PublishNotificationCallback callback);

/// A publish callback that records, and then changes the body, which is the host's to do.
void recordPublication(const char* source, const char* name, Json::Value& body);
