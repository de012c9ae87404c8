#pragma once

#include "platform/CJsonOperation.h"

namespace tvfirmware {

// The host's readers with their result turned round: true when the value was read. On false the value stays as it was, so a
// default is put in place before the call.

inline bool readInt(Json::Value& object, const char* key, int& value)
{
    return CJsonOperation::safeReadInt(object, key, value) == 0;
}

inline bool readUInt(Json::Value& object, const char* key, unsigned int& value)
{
    return CJsonOperation::safeReadUInt(object, key, value) == 0;
}

inline bool readBool(Json::Value& object, const char* key, bool& value)
{
    return CJsonOperation::safeReadBool(object, key, value) == 0;
}

inline bool readString(Json::Value& object, const char* key, std::string& value)
{
    return CJsonOperation::safeReadString(object, key, value) == 0;
}

} // namespace tvfirmware
