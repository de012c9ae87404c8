#include "desktop/host/PendingAnswers.h"

#include "protocol/ProtocolTable.h"

#include <algorithm>

namespace desktop {

namespace {

std::string reqIdOf(const Json::Value& object)
{
    const Json::Value reqId = object.isObject() ? object.get("reqId", "") : Json::Value("");
    return reqId.isString() ? reqId.asString() : "";
}

bool answersLater(const std::string& command)
{
    return std::any_of(protocol::kCommands.begin(), protocol::kCommands.end(),
                       [&command](const auto& known) { return known.answer != nullptr && command == known.name; });
}

/// The command whose answer @p notification ends; empty when there is none.
std::string commandAnsweredBy(const std::string& notification)
{
    const auto found =
        std::find_if(protocol::kCommands.begin(), protocol::kCommands.end(),
                     [&notification](const auto& known) { return known.answer != nullptr && notification == known.answer; });
    return found == protocol::kCommands.end() ? "" : found->name;
}

} // namespace

void PendingAnswers::accepted(const std::string& command, const Json::Value& request)
{
    if (answersLater(command)) {
        m_pending[command] = reqIdOf(request);
    } else if (command == "storagemedia.folder.user.cancel") {
        m_pending.erase("storagemedia.folder.chgdir"); // which is not answered when it is cancelled
    }
}

void PendingAnswers::refused(const std::string& command)
{
    m_pending.erase(command);
}

void PendingAnswers::notified(const std::string& name, const Json::Value& body)
{
    const auto pending = m_pending.find(commandAnsweredBy(name));
    if (pending != m_pending.end() && pending->second == reqIdOf(body)) {
        m_pending.erase(pending);
    }
}

} // namespace desktop
