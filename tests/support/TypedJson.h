#pragma once

#include <json/json.h>

#include <string>

namespace testsupport {

/// @p value as text that shows JSON types: unsigned numbers end in u, real ones in r. Members come sorted by name.
std::string typed(const Json::Value& value);

/// The value that the JSON text @p text describes; throws on an error in it.
Json::Value parsed(const std::string& text);

} // namespace testsupport
