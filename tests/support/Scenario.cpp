#include "support/Scenario.h"

#include "support/Protocol.h"
#include "support/TypedJson.h"

#include <gtest/gtest.h>

#include <regex>

using testsupport::expectReplyAsDescribed;
using testsupport::parsed;
using testsupport::typed;

Scenario::Scenario(const std::string& function, Command command)
    : m_function(function)
    , m_command(command)
{
}

Scenario::Scenario(int eventId, void* data)
    : Scenario("onRecvEvent",
               [eventId, data](ExposedPlugin&) { tvfirmware::CStorageMediaPlugin::onRecvEvent(eventId, data); })
{
}

Scenario::Scenario(int eventId, Json::Value* object)
    : Scenario("onRecvEvent", [eventId, object](ExposedPlugin&) {
        const std::string before = typed(*object);
        tvfirmware::CStorageMediaPlugin::onRecvEvent(eventId, object);
        EXPECT_EQ(typed(*object), before) << "the middleware's object was changed";
    })
{
}

Scenario::Scenario(const std::string& function, std::function<void(ExposedPlugin&)> action)
    : m_function(function)
    , m_action(std::move(action))
{
}

Scenario& Scenario::request(const std::string& json)
{
    m_request = json;
    return *this;
}

Scenario& Scenario::nullRequest()
{
    m_request.reset();
    return *this;
}

Scenario& Scenario::reply(const std::string& json)
{
    m_reply = json;
    return *this;
}

Scenario& Scenario::nullReply()
{
    m_reply.reset();
    return *this;
}

Scenario& Scenario::given(std::function<void(FakePlatform&, ExposedPlugin&)> setUp)
{
    m_setUp = std::move(setUp);
    return *this;
}

Scenario& Scenario::refusedBy(const std::string& operation)
{
    m_refusing = operation;
    return *this;
}

Scenario& Scenario::happens(Journal journal)
{
    m_journal = std::move(journal);
    return *this;
}

Scenario& Scenario::succeeds()
{
    m_result = true;
    return *this;
}

Scenario& Scenario::fails()
{
    m_result = false;
    return *this;
}

Scenario& Scenario::leavesRequest(const std::string& typedJson)
{
    m_requestAfter = typedJson;
    return *this;
}

Scenario& Scenario::leavesReply(const std::string& typedJson)
{
    m_replyAfter = typedJson;
    return *this;
}

Scenario& Scenario::afterwards(std::function<void()> look)
{
    m_look = std::move(look);
    return *this;
}

void Scenario::check() const
{
    for (int level = 0; level <= 4; ++level) {
        checkAt(level);
    }
}

void Scenario::checkAt(int level) const
{
    for (const bool readersWriteJunk : {false, true}) {
        for (const int status : m_refusing.empty() ? std::vector<int>{0} : std::vector<int>{3, -3}) {
            play({level, readersWriteJunk, status});
        }
    }
}

void Scenario::play(const Conditions& conditions) const
{
    SCOPED_TRACE(m_function + " at log level " + std::to_string(conditions.level) + ", status " +
                 std::to_string(conditions.status) + (conditions.readersWriteJunk ? ", readers that write junk" : ""));
    FakePlatform platform;
    ExposedPlugin plugin;
    fillWithOddValues(plugin);
    plugin.m_pPublishCallback = recordPublication;
    platform.logLevel = conditions.level;
    platform.readersWriteJunk = conditions.readersWriteJunk;
    if (m_setUp) {
        m_setUp(platform, plugin);
    }
    if (!m_refusing.empty()) {
        platform.statuses[m_refusing] = conditions.status;
    }
    platform.takeJournal();
    const StateWatch watch(plugin);
    act(plugin);

    const std::string expected = render(m_journal, m_function, conditions.level);
    EXPECT_EQ(normalised(platform.takeJournal()),
              std::regex_replace(expected, std::regex(kStatus), std::to_string(conditions.status)));
    EXPECT_FALSE(platform.isHandleHeld()) << "a manager's handle was kept";
    if (m_look) {
        m_look();
    }
}

void Scenario::act(ExposedPlugin& plugin) const
{
    if (m_command == nullptr) {
        m_action(plugin);
        return;
    }
    ASSERT_TRUE(m_result.has_value()) << "a command's result must be expected";
    Json::Value request = m_request ? parsed(*m_request) : Json::Value();
    Json::Value reply = m_reply ? parsed(*m_reply) : Json::Value();
    const std::string requestBefore = typed(request);
    const Json::Value replyBefore = reply;
    EXPECT_EQ((plugin.*m_command)(m_request ? &request : nullptr, m_reply ? &reply : nullptr), *m_result);
    if (*m_result && m_reply) {
        expectReplyAsDescribed(m_function, replyBefore, reply);
    }
    EXPECT_EQ(typed(request), m_requestAfter.value_or(requestBefore));
    EXPECT_EQ(typed(reply), m_replyAfter.value_or(typed(replyBefore)));
}
