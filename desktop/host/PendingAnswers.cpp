#include "desktop/host/PendingAnswers.h"

#include <algorithm>
#include <array>

namespace desktop {

namespace {

/// Commands that answer later, and how.
struct LateAnswer {
    const char* command;
    const char* notification;
};

constexpr std::array kLateAnswers = {
    LateAnswer{"storagemedia.folder.chgdir", "storagemedia.folder.chgdir.complete"},
    LateAnswer{"storagemedia.video.searchFiles", "storagemedia.video.searchFiles.complete"},
    LateAnswer{"storagemedia.group.musicorphoto", "storagemedia.group.musicorphoto.complete"},
    LateAnswer{"storagemedia.start.thumbnail", "startThumbnail.complete"},
};

std::string reqIdOf(const Json::Value& object)
{
    const Json::Value reqId = object.isObject() ? object.get("reqId", "") : Json::Value("");
    return reqId.isString() ? reqId.asString() : "";
}

bool answersLater(const std::string& command)
{
    return std::any_of(kLateAnswers.begin(), kLateAnswers.end(),
                       [&command](const LateAnswer& late) { return command == late.command; });
}

std::string commandAnsweredBy(const std::string& notification)
{
    const auto found = std::find_if(kLateAnswers.begin(), kLateAnswers.end(),
                                    [&notification](const LateAnswer& late) { return notification == late.notification; });
    return found == kLateAnswers.end() ? "" : found->command;
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
