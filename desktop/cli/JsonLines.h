#pragma once

#include <json/json.h>

#include <string>
#include <string_view>

namespace desktop {

/// @p value on one line with its line end. Always UTF-8: bytes that are none are written as in encoded names.
std::string jsonLine(const Json::Value& value);

/// Why and where a text is no JSON object.
struct JsonError {
    std::string reason;
    int column = 1; ///< bytes, from 1
};

/// Reads the one-line object @p text, strictly. False, @p error told, when it is none.
bool parseJsonLine(std::string_view text, Json::Value& object, JsonError& error);

} // namespace desktop
