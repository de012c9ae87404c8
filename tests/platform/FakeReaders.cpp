#include "platform/Recording.h"

#include "platform/CJsonOperation.h"

using recording::call;

namespace tvfirmware {

namespace {

const Json::Value* member(const Json::Value& object, const std::string& key)
{
    return object.isObject() ? object.find(key.data(), key.data() + key.size()) : nullptr;
}

} // namespace

int CJsonOperation::safeReadInt(Json::Value& object, std::string key, int& value)
{
    call("read int " + key, value);
    const Json::Value* found = member(object, key);
    if (found == nullptr || !found->isInt()) {
        return -1;
    }
    value = found->asInt();
    return 0;
}

int CJsonOperation::safeReadUInt(Json::Value& object, std::string key, unsigned int& value)
{
    call("read uint " + key, value);
    const Json::Value* found = member(object, key);
    if (found == nullptr || !found->isUInt()) {
        return -1;
    }
    value = found->asUInt();
    return 0;
}

int CJsonOperation::safeReadBool(Json::Value& object, std::string key, bool& value)
{
    call("read bool " + key, value);
    const Json::Value* found = member(object, key);
    if (found == nullptr || !found->isBool()) {
        return 1;
    }
    value = found->asBool();
    return 0;
}

int CJsonOperation::safeReadString(Json::Value& object, std::string key, std::string& value)
{
    call("read string " + key, value);
    const Json::Value* found = member(object, key);
    if (found == nullptr || !found->isString()) {
        return 1;
    }
    value = found->asString();
    return 0;
}

} // namespace tvfirmware
