#include "platform/CJsonOperation.h"

namespace tvfirmware {

namespace {

constexpr int kRead = 0;
constexpr int kUnreadable = -1;

// Looks the member up without adding it, whatever the value is; null when there is none.
const Json::Value* member(const Json::Value& object, const std::string& key)
{
    return object.isObject() ? object.find(key.data(), key.data() + key.size()) : nullptr;
}

template <typename T>
int safeRead(const Json::Value& object, const std::string& key, T& value)
{
    const Json::Value* found = member(object, key);
    if (found == nullptr || !found->is<T>()) {
        return kUnreadable;
    }
    value = found->as<T>();
    return kRead;
}

} // namespace

int CJsonOperation::safeReadInt(Json::Value& object, std::string key, int& value)
{
    return safeRead(object, key, value);
}

int CJsonOperation::safeReadUInt(Json::Value& object, std::string key, unsigned int& value)
{
    return safeRead(object, key, value);
}

int CJsonOperation::safeReadBool(Json::Value& object, std::string key, bool& value)
{
    return safeRead(object, key, value);
}

int CJsonOperation::safeReadString(Json::Value& object, std::string key, std::string& value)
{
    return safeRead(object, key, value);
}

} // namespace tvfirmware
