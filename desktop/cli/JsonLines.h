#pragma once

#include "desktop/host/HostUpdate.h"

#include <json/json.h>

#include <string>
#include <string_view>

namespace desktop {

/// @p value on one line with its line end. Always UTF-8: other bytes are written as encodeName writes them. What is unsafe
/// for a terminal is written \uHHHH.
std::string jsonLine(const Json::Value& value);

/// The object that tells @p notification, as the shell writes it.
Json::Value notificationLine(const Notification& notification);

/// Why a text is not a JSON object, and where.
struct JsonError {
    std::string reason;
    int column = 1; ///< bytes, from 1
};

/// Reads the one-line object @p text, strictly. False, with the reason in @p error, when it is not one.
bool parseJsonLine(std::string_view text, Json::Value& object, JsonError& error);

} // namespace desktop
