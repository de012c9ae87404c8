#include "platform/CJsonOperation.h"

#include <gtest/gtest.h>

#include <sstream>

namespace tvfirmware {
namespace {

Json::Value json(const std::string& text)
{
    Json::Value value;
    std::istringstream(text) >> value;
    return value;
}

TEST(CJsonOperation_Read, MemberOfTheRightType_IsRead)
{
    Json::Value object = json(R"({"i":-5,"u":4000000000,"b":true,"s":"text"})");
    int i = 0;
    unsigned int u = 0;
    bool b = false;
    std::string s;
    EXPECT_EQ(CJsonOperation::safeReadInt(object, "i", i), 0);
    EXPECT_EQ(CJsonOperation::safeReadUInt(object, "u", u), 0);
    EXPECT_EQ(CJsonOperation::safeReadBool(object, "b", b), 0);
    EXPECT_EQ(CJsonOperation::safeReadString(object, "s", s), 0);
    EXPECT_EQ(i, -5);
    EXPECT_EQ(u, 4000000000U);
    EXPECT_TRUE(b);
    EXPECT_EQ(s, "text");
}

TEST(CJsonOperation_Read, MissingOrOfAnotherType_LeavesTheValueAndTheObject)
{
    const std::string text = R"({"a":[1],"b":1,"big":4000000000,"f":1.5,"i":-1,"n":null,"s":"1"})";
    Json::Value object = json(text);
    int i = 77;
    unsigned int u = 77;
    bool b = true;
    std::string s = "before";
    for (const char* key : {"missing", "a", "f", "n", "s", "big"}) {
        EXPECT_NE(CJsonOperation::safeReadInt(object, key, i), 0) << key;
    }
    for (const char* key : {"missing", "a", "f", "n", "s", "i"}) {
        EXPECT_NE(CJsonOperation::safeReadUInt(object, key, u), 0) << key;
    }
    for (const char* key : {"missing", "a", "f", "n", "s", "b"}) {
        EXPECT_NE(CJsonOperation::safeReadBool(object, key, b), 0) << key;
    }
    for (const char* key : {"missing", "a", "f", "n", "b"}) {
        EXPECT_NE(CJsonOperation::safeReadString(object, key, s), 0) << key;
    }
    EXPECT_EQ(i, 77);
    EXPECT_EQ(u, 77U);
    EXPECT_TRUE(b);
    EXPECT_EQ(s, "before");
    EXPECT_EQ(object, json(text));
}

TEST(CJsonOperation_Read, NoObject_IsUnreadableAndStaysWhatItIs)
{
    for (const char* text : {"null", "[1]", "\"s\"", "5"}) {
        Json::Value value = json(text);
        int i = 0;
        EXPECT_NE(CJsonOperation::safeReadInt(value, "i", i), 0) << text;
        EXPECT_EQ(value, json(text));
    }
}

} // namespace
} // namespace tvfirmware
