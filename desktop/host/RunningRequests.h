#pragma once

#include "desktop/host/HostUpdate.h"

#include "desktop/boundary/DesktopMiddleware.h"

#include <json/json.h>

#include <array>
#include <optional>
#include <string>

namespace desktop {

/// The requests whose answer comes later, with a notification: at most one of each kind, since a command answers its latest
/// request only. Every request that was accepted ends exactly once. Used while the delivery of events is held.
class RunningRequests {
public:
    /// @p command has succeeded with @p request. Returns the number by which RequestEnded will name the request, counted
    /// from 1; 0 for a command that answers at once.
    std::uint64_t accepted(const std::string& command, const Json::Value& request);
    /// Notification @p name with @p body has been published to @p channel. Returns the request that has come to its end with
    /// it; nothing when it ends none. It is not answered when the notification bears another request's marks: a request that
    /// the plugin refuses may leave its own behind.
    std::optional<RequestEnded> published(const std::string& channel, const std::string& name, const Json::Value& body);
    /// The middleware has ended what runs of @p kind, if anything did. Returns the request that gets no answer now.
    std::optional<RequestEnded> dropped(BackgroundRequest kind);

private:
    struct Request {
        std::uint64_t number = 0; ///< 0: none runs
        std::string channel;
        std::string reqId;
    };

    std::optional<RequestEnded> end(BackgroundRequest kind, bool answered);
    Request& requestOf(BackgroundRequest kind) { return m_running.at(static_cast<std::size_t>(kind)); }

    std::uint64_t m_count = 0;
    std::array<Request, kBackgroundRequests> m_running; ///< by kind
};

} // namespace desktop
