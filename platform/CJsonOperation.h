#pragma once

#include <json/json.h>

#include <string>

namespace tvfirmware {

/// The host's checked readers. Each returns zero when member @p key of @p object was read into @p value, and non-zero when
/// the member is missing or of another type; what @p value then holds is not used. Safe on any thread.
class CJsonOperation {
public:
    static int safeReadInt(Json::Value& object, std::string key, int& value);
    static int safeReadUInt(Json::Value& object, std::string key, unsigned int& value);
    static int safeReadBool(Json::Value& object, std::string key, bool& value);
    static int safeReadString(Json::Value& object, std::string key, std::string& value);
};

} // namespace tvfirmware
