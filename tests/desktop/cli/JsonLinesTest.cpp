#include "desktop/cli/JsonLines.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

JsonError errorOf(const std::string& text)
{
    Json::Value object;
    JsonError error;
    EXPECT_FALSE(parseJsonLine(text, object, error)) << text;
    return error;
}

TEST(JsonLines_Write, AnyValue_IsOneLineOfUtf8)
{
    Json::Value value;
    value["name"] = "电影\n";
    value["bad"] = "caf\xE9";
    value["list"].append(1);
    EXPECT_EQ(jsonLine(value), "{\"bad\":\"caf\\\\xE9\",\"list\":[1],\"name\":\"电影\\n\"}\n");
}

TEST(JsonLines_Write, CharactersThatUpsetATerminal_AreEscaped)
{
    Json::Value value;
    value["\x7f"] = "\x1b[2J\xC2\x9B\xE2\x80\xAE\xE2\x80\xA8\xD8\x9C";
    EXPECT_EQ(jsonLine(value), "{\"\\u007f\":\"\\u001b[2J\\u009b\\u202e\\u2028\\u061c\"}\n");
    Json::Value read;
    JsonError error;
    ASSERT_TRUE(parseJsonLine(jsonLine(value), read, error));
    EXPECT_EQ(read, value);
}

TEST(JsonLines_Parse, Object_IsRead)
{
    Json::Value object;
    JsonError error;
    ASSERT_TRUE(parseJsonLine(R"( {"a":[1,2]} )", object, error));
    EXPECT_EQ(object["a"][1].asInt(), 2);
}

TEST(JsonLines_Parse, Fault_IsToldWithItsColumn)
{
    EXPECT_EQ(errorOf(R"({"command":"x")").column, 15);
    EXPECT_EQ(errorOf(R"({"a":nonsense})").column, 6);
    EXPECT_NE(errorOf(R"({"a":nonsense})").reason, "");
    EXPECT_EQ(errorOf(R"({"a":nonsense})").reason.find('\n'), std::string::npos);
    EXPECT_NE(errorOf(R"({"a":1} {"b":2})").reason, "");
    EXPECT_NE(errorOf(R"({"a":1,"a":2})").reason, "");
    EXPECT_EQ(errorOf("[1]").reason, "An object is wanted.");
    EXPECT_NE(errorOf(std::string(100'000, '[')).reason, "");
}

} // namespace
} // namespace desktop
