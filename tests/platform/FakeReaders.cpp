#include "platform/Recording.h"

#include "platform/CJsonOperation.h"

using recording::call;

namespace tvfirmware {

namespace {

const Json::Value* member(const Json::Value& object, const std::string& key)
{
    return object.isObject() ? object.find(key.data(), key.data() + key.size()) : nullptr;
}

// What a reader returns that cannot read: anything but 0, and it may have written anything by then.
template <typename Value>
int failed(Value& value, const Value& junk)
{
    if (!FakePlatform::instance().readersWriteJunk) {
        return -1;
    }
    value = junk;
    return 1;
}

} // namespace

int CJsonOperation::safeReadInt(Json::Value& object, std::string key, int& value)
{
    call("read int " + key, value);
    const Json::Value* found = member(object, key);
    if (found == nullptr || !found->isInt()) {
        return failed(value, -559038737);
    }
    value = found->asInt();
    return 0;
}

int CJsonOperation::safeReadUInt(Json::Value& object, std::string key, unsigned int& value)
{
    call("read uint " + key, value);
    const Json::Value* found = member(object, key);
    if (found == nullptr || !found->isUInt()) {
        return failed(value, 0xDEADBEEFU);
    }
    value = found->asUInt();
    return 0;
}

int CJsonOperation::safeReadBool(Json::Value& object, std::string key, bool& value)
{
    call("read bool " + key, value);
    const Json::Value* found = member(object, key);
    if (found == nullptr || !found->isBool()) {
        return failed(value, !value);
    }
    value = found->asBool();
    return 0;
}

int CJsonOperation::safeReadString(Json::Value& object, std::string key, std::string& value)
{
    call("read string " + key, value);
    const Json::Value* found = member(object, key);
    if (found == nullptr || !found->isString()) {
        return failed(value, std::string("junk"));
    }
    value = found->asString();
    return 0;
}

} // namespace tvfirmware
