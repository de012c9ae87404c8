#include "plugin/CommandTable.h"

#include "support/Folders.h"
#include "support/Protocol.h"
#include "support/Scenario.h"
#include "support/TypedJson.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

namespace {

using testsupport::protocol;
using testsupport::typed;

const Json::Value kReplyBefore = [] {
    Json::Value reply;
    reply["kept"] = "as it was";
    return reply;
}();

/// Each command, fed its described request with one key changed.
class DescribedCommand : public testing::TestWithParam<unsigned int> {
protected:
    enum Outcome { Succeeds, Fails, Throws };

    const Json::Value& description = protocol()["commands"][GetParam()];
    const Handler handler = gCmdStringMap[GetParam()].handler;

    Json::Value example() const { return description["example"]["request"]; }

    /// The example with @p key set to @p value.
    Json::Value with(const std::string& key, const Json::Value& value) const
    {
        Json::Value request = example();
        request[key] = value;
        return request;
    }

    Json::Value without(const std::string& key) const
    {
        Json::Value request = example();
        request.removeMember(key);
        return request;
    }

    /// What the lack of a readable value for @p key comes to.
    static Outcome lackOf(const Json::Value& key) { return key["required"].asBool() ? Fails : Succeeds; }

    /// Plays @p request on a platform that has an answer to everything.
    void expect(Json::Value request, Outcome outcome)
    {
        FakePlatform platform;
        platform.files = {folderFile("/media/stick/a"), folderFile("/media/stick/b")};
        platform.media.resize(2);
        platform.playlists = {{"/media/stick/p.m3u", 6}};
        platform.json["answer"] = 1;
        ExposedPlugin plugin;
        Json::Value reply = kReplyBefore;
        SCOPED_TRACE(description["name"].asString() + " " + typed(request));
        if (outcome == Throws) {
            EXPECT_THROW((plugin.*handler)(&request, &reply), Json::LogicError);
            return;
        }
        EXPECT_EQ((plugin.*handler)(&request, &reply), outcome == Succeeds);
        if (outcome == Succeeds) {
            testsupport::expectReplyAsDescribed(description["handler"].asString(), kReplyBefore, reply);
        } else {
            EXPECT_EQ(typed(reply), typed(kReplyBefore)) << "a failure changed the reply";
        }
    }
};

/// A value of every JSON type, by what the readers call it.
const std::vector<std::pair<std::string, Json::Value>>& oneOfEachType()
{
    static const std::vector<std::pair<std::string, Json::Value>> values = {
        {"null", Json::Value()},
        {"bool", true},
        {"number", -1},
        {"number", 1.5},
        {"string", "text"},
        {"array", Json::Value(Json::arrayValue)},
        {"object", Json::Value(Json::objectValue)},
    };
    return values;
}

TEST_P(DescribedCommand, ExampleRequest_Succeeds)
{
    expect(example(), Succeeds);
}

TEST_P(DescribedCommand, ExampleReply_IsAsDescribed)
{
    for (const Json::Value& key : description["reply"]["keys"]) {
        EXPECT_TRUE(key["optional"].asBool() || description["example"]["reply"].isMember(key["key"].asString()))
            << key["key"];
    }
    EXPECT_EQ(description["reply"].isMember("keys"), description["example"].isMember("reply"));
}

TEST_P(DescribedCommand, ExampleRequest_NamesEveryKey)
{
    EXPECT_EQ(description["request"].size(), description["example"]["request"].size());
}

TEST_P(DescribedCommand, KeyMissing_FailsOrTakesItsDefault)
{
    for (const Json::Value& key : description["request"]) {
        EXPECT_NE(key["required"].asBool(), key.isMember("default")) << "either required or with a default";
        expect(without(key["key"].asString()), lackOf(key));
    }
}

TEST_P(DescribedCommand, KeyMissingWhereAnotherRequiresIt_Fails)
{
    for (const Json::Value& key : description["request"]) {
        for (const std::string& other : key["requiredWhen"].getMemberNames()) {
            Json::Value request = without(key["key"].asString());
            request[other] = key["requiredWhen"][other];
            expect(request, Fails);
        }
    }
}

TEST_P(DescribedCommand, KeyOfAnyOtherType_CountsAsMissing)
{
    for (const Json::Value& key : description["request"]) {
        for (const auto& [type, value] : oneOfEachType()) {
            const bool own = type == key["type"].asString() || (type == "number" && value.isInt() && key["type"] == "int");
            const bool container = value.isArray() || value.isObject();
            if (key["unchecked"].asBool()) {
                expect(with(key["key"].asString(), value), container ? Throws : Succeeds);
            } else if (!own) {
                expect(with(key["key"].asString(), value), lackOf(key));
            }
        }
    }
}

TEST_P(DescribedCommand, EmptyText_CountsAsMissingWhereItMustNotBe)
{
    for (const Json::Value& key : description["request"]) {
        if (key["type"] == "string") {
            expect(with(key["key"].asString(), ""), key["nonEmpty"].asBool() ? Fails : Succeeds);
        }
    }
}

TEST_P(DescribedCommand, NumberAtItsBounds_IsTakenAndBeyondThemCountsAsMissing)
{
    for (const Json::Value& key : description["request"]) {
        const std::string name = key["key"].asString();
        const bool bounded = key.isMember("values") || key.isMember("minimum");
        if (key["type"] == "int") {
            for (const int edge : {INT_MIN, -1, 0, INT_MAX}) {
                const bool inside = !bounded || (edge >= key["minimum"].asInt() && edge <= key["maximum"].asInt());
                expect(with(name, edge), inside ? Succeeds : Fails);
            }
            expect(with(name, static_cast<Json::Int64>(INT_MAX) + 1), lackOf(key));
            expect(with(name, static_cast<Json::Int64>(INT_MIN) - 1), lackOf(key));
        } else if (key["type"] == "uint") {
            expect(with(name, 0U), bounded ? Fails : Succeeds);
            expect(with(name, UINT_MAX), bounded ? Fails : Succeeds);
            expect(with(name, static_cast<Json::Int64>(UINT_MAX) + 1), lackOf(key));
            expect(with(name, -1), lackOf(key));
        }
    }
}

TEST_P(DescribedCommand, NumberInAndOutOfItsRange_IsTakenOrRefused)
{
    for (const Json::Value& key : description["request"]) {
        const std::string name = key["key"].asString();
        for (int value = -1; value <= 13; ++value) {
            if (key.isMember("values") && value >= 0) {
                const bool allowed = std::find(key["values"].begin(), key["values"].end(), value) != key["values"].end();
                expect(with(name, value), allowed ? Succeeds : Fails);
            } else if (key.isMember("minimum")) {
                const bool allowed = value >= key["minimum"].asInt() && value <= key["maximum"].asInt();
                expect(with(name, value), allowed ? Succeeds : Fails);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Protocol, DescribedCommand, testing::Range(0U, static_cast<unsigned int>(kCommandCount)),
                         [](const auto& row) { return protocol()["commands"][row.param]["handler"].asString(); });

TEST(Protocol, Commands_AreThoseOfTheTableInItsOrder)
{
    const Json::Value& commands = protocol()["commands"];
    ASSERT_EQ(commands.size(), kCommandCount);
    for (unsigned int i = 0; i < commands.size(); ++i) {
        EXPECT_EQ(commands[i]["name"].asString(), gCmdStringMap[i].name);
    }
}

TEST(Protocol, Completions_AreDescribedNotifications)
{
    for (const Json::Value& command : protocol()["commands"]) {
        for (const Json::Value& completion : command["completion"]) {
            const Json::Value& notifications = protocol()["notifications"];
            EXPECT_TRUE(std::any_of(notifications.begin(), notifications.end(), [&completion](const Json::Value& known) {
                return known["name"] == completion && known["form"] == "channel";
            })) << completion;
        }
    }
}

TEST(Protocol, EveryHandledEvent_HasItsNotification)
{
    std::vector<int> described;
    for (const Json::Value& notification : protocol()["notifications"]) {
        for (const Json::Value& event : notification["events"]) {
            described.push_back(event.asInt());
        }
    }
    for (int id = 0; id <= 52; ++id) {
        const std::vector<int> silent = {0, 7, 11, 17, 18, 20, 24, 28, 30, 36, 49, 50};
        const bool publishes = std::find(silent.begin(), silent.end(), id) == silent.end();
        EXPECT_EQ(std::find(described.begin(), described.end(), id) != described.end(), publishes) << id;
    }
}

} // namespace
