#include "support/Scenario.h"

#include "support/Protocol.h"
#include "support/TypedJson.h"

#include <gtest/gtest.h>

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

Scenario& Scenario::happens(std::vector<Happening> journal)
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

Scenario& Scenario::afterwards(std::function<void(const ExposedPlugin&)> look)
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
    SCOPED_TRACE(m_function + " at log level " + std::to_string(level));
    FakePlatform platform;
    ExposedPlugin plugin;
    plugin.m_pPublishCallback = recordPublication;
    platform.logLevel = level;
    if (m_setUp) {
        m_setUp(platform, plugin);
    }
    platform.takeJournal();

    Json::Value request = m_request ? parsed(*m_request) : Json::Value();
    Json::Value reply = m_reply ? parsed(*m_reply) : Json::Value();
    const std::string requestBefore = typed(request);
    const Json::Value replyGiven = reply;
    const std::string replyBefore = typed(reply);
    if (m_command != nullptr) {
        ASSERT_TRUE(m_result.has_value()) << "a command's result must be expected";
        EXPECT_EQ((plugin.*m_command)(m_request ? &request : nullptr, m_reply ? &reply : nullptr), *m_result);
        if (*m_result && m_reply) {
            expectReplyAsDescribed(m_function, replyGiven, reply);
        }
    } else {
        m_action(plugin);
    }

    EXPECT_EQ(normalised(platform.takeJournal()), render(m_journal, m_function, level));
    EXPECT_EQ(typed(request), m_requestAfter.value_or(requestBefore));
    EXPECT_EQ(typed(reply), m_replyAfter.value_or(replyBefore));
    EXPECT_EQ(platform.storageManager.use_count(), 1) << "a manager handle was kept";
    EXPECT_EQ(platform.systemManager.use_count(), 1) << "a manager handle was kept";
    if (m_look) {
        m_look(plugin);
    }
}
