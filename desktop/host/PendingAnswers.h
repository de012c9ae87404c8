#pragma once

#include <json/json.h>

#include <map>
#include <string>

namespace desktop {

/// A client's requests whose answer comes later, with a notification. A command answers its latest request only, so there is
/// at most one for each. Used on one thread.
class PendingAnswers {
public:
    /// @p command has succeeded with @p request.
    void accepted(const std::string& command, const Json::Value& request);
    /// The plugin has refused a request of @p command, which also ends the one before.
    void refused(const std::string& command);
    /// Notification @p name with @p body has come.
    void notified(const std::string& name, const Json::Value& body);

    /// The commands that wait for an answer, each with its reqId.
    const std::map<std::string, std::string>& pending() const { return m_pending; }

private:
    std::map<std::string, std::string> m_pending; ///< command to reqId
};

} // namespace desktop
