#pragma once

#include "platform/CJsonOperation.h"

namespace tvfirmware {

// The host's readers with their result turned round: true when the value was read. The caller's default goes to the reader,
// and is in place after a failed read whatever the reader has written: its result is all that hosts promise.

/// Stores @p read in @p value if a reader's result @p ret says that it was read; whether it was.
template <typename Value>
bool storeRead(int ret, const Value& read, Value& value)
{
    if (ret != 0) {
        return false;
    }
    value = read;
    return true;
}

inline bool readInt(Json::Value& object, const char* key, int& value)
{
    int read = value;
    const int ret = CJsonOperation::safeReadInt(object, key, read);
    return storeRead(ret, read, value);
}

inline bool readUInt(Json::Value& object, const char* key, unsigned int& value)
{
    unsigned int read = value;
    const int ret = CJsonOperation::safeReadUInt(object, key, read);
    return storeRead(ret, read, value);
}

inline bool readBool(Json::Value& object, const char* key, bool& value)
{
    bool read = value;
    const int ret = CJsonOperation::safeReadBool(object, key, read);
    return storeRead(ret, read, value);
}

inline bool readString(Json::Value& object, const char* key, std::string& value)
{
    std::string read = value;
    const int ret = CJsonOperation::safeReadString(object, key, read);
    return storeRead(ret, read, value);
}

} // namespace tvfirmware
