#include "support/Protocol.h"

#include "support/TypedJson.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <map>

namespace testsupport {

namespace {

bool isOfType(const Json::Value& value, const std::string& type)
{
    static const std::map<std::string, Json::ValueType> kTypes = {
        {"int", Json::intValue},      {"uint", Json::uintValue},   {"string", Json::stringValue},
        {"bool", Json::booleanValue}, {"array", Json::arrayValue},
    };
    return value.type() == kTypes.at(type);
}

const Json::Value& entryOf(const Json::Value& list, const std::string& member, const std::string& text)
{
    for (const Json::Value& entry : list) {
        if (entry[member].asString() == text) {
            return entry;
        }
    }
    return Json::Value::nullSingleton();
}

/// Whether @p object has every key of @p keys that is not optional, each of its type; says what is wrong in @p error.
bool hasKeys(const Json::Value& object, const Json::Value& keys, std::string& error)
{
    for (const Json::Value& key : keys) {
        const std::string name = key["key"].asString();
        if (!object.isMember(name)) {
            if (!key["optional"].asBool()) {
                error = "no " + name;
                return false;
            }
            continue;
        }
        if (!isOfType(object[name], key["type"].asString())) {
            error = name + " is not of type " + key["type"].asString();
            return false;
        }
        for (const Json::Value& element : key["of"].empty() ? Json::Value::nullSingleton() : object[name]) {
            if (element.size() != key["of"].size() || !hasKeys(element, key["of"], error)) {
                error = "an element of " + name + " is not as described " + error;
                return false;
            }
        }
    }
    return true;
}

bool hasNoOtherKeys(const Json::Value& object, const Json::Value& keys, std::string& error)
{
    for (const std::string& name : object.getMemberNames()) {
        if (entryOf(keys, "key", name).isNull()) {
            error = name + " is not described";
            return false;
        }
    }
    return true;
}

} // namespace

const Json::Value& protocol()
{
    static const Json::Value description = [] {
        std::ifstream file(PROTOCOL_DESCRIPTION);
        return parsed(std::string(std::istreambuf_iterator<char>(file), {}));
    }();
    return description;
}

const Json::Value& describedCommand(const std::string& handler)
{
    return entryOf(protocol()["commands"], "handler", handler);
}

void expectReplyAsDescribed(const std::string& handler, const Json::Value& before, const Json::Value& reply)
{
    const Json::Value& command = describedCommand(handler);
    if (command.isNull()) {
        return; // a member that no command reaches
    }
    const std::string form = command["reply"]["form"].asString();
    const Json::Value& keys = command["reply"]["keys"];
    std::string error;
    const bool kept = reply == before;
    if (form == "untouched" || (kept && command["successDespiteFailure"].asBool())) {
        EXPECT_TRUE(kept) << handler << " is described to leave the reply alone";
    } else if (form == "added") {
        EXPECT_TRUE(hasKeys(reply, keys, error)) << handler << ": " << error;
        for (const std::string& name : before.isObject() ? before.getMemberNames() : Json::Value::Members()) {
            EXPECT_TRUE(reply.isMember(name)) << handler << " is described to keep " << name;
        }
    } else if (form == "replaced") {
        EXPECT_TRUE(hasKeys(reply, keys, error) && hasNoOtherKeys(reply, keys, error)) << handler << ": " << error;
    } else {
        EXPECT_EQ(form, "platform") << handler << " has no described reply";
    }
}

void expectNotificationAsDescribed(const std::string& source, const std::string& name, const Json::Value& body)
{
    if (name.empty() || name.front() == '.') {
        return; // a device status or a thumbnail request that the plugin never had
    }
    const Json::Value& notification = entryOf(protocol()["notifications"], "name", name);
    ASSERT_FALSE(notification.isNull()) << name << " is not described";
    EXPECT_EQ(notification["form"].asString() == "broadcast", source == "storagemedia") << name << " from " << source;
    const Json::Value& described = notification["body"];
    std::string error;
    if (described.isArray()) {
        EXPECT_TRUE(hasKeys(body, described, error) && hasNoOtherKeys(body, described, error)) << name << ": " << error;
    } else if (described.asString() == "null") {
        EXPECT_TRUE(body.isNull()) << name;
    } else if (described.asString() == "platform with reqId") {
        EXPECT_TRUE(body["reqId"].isString()) << name;
    } else {
        EXPECT_EQ(described.asString(), "platform") << name << " has no described body";
    }
}

} // namespace testsupport
