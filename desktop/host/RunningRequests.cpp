#include "desktop/host/RunningRequests.h"

#include "protocol/ProtocolTable.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace desktop {

namespace {

// By kind.
constexpr std::array<std::string_view, kBackgroundRequests> kCommands = {
    "storagemedia.folder.chgdir", "storagemedia.video.searchFiles", "storagemedia.group.musicorphoto",
    "storagemedia.start.thumbnail"};

constexpr bool isAnsweredLater(const protocol::CommandDescription& command)
{
    return command.answer != nullptr;
}
static_assert(std::count_if(protocol::kCommands.begin(), protocol::kCommands.end(), isAnsweredLater) ==
              static_cast<std::ptrdiff_t>(kBackgroundRequests));

// The kind of request that @p command makes; nothing when it answers at once.
std::optional<BackgroundRequest> kindOf(std::string_view command)
{
    const auto* const found = std::find(kCommands.begin(), kCommands.end(), command);
    return found != kCommands.end() ? std::optional(static_cast<BackgroundRequest>(found - kCommands.begin()))
                                    : std::nullopt;
}

// The kind of request that notification @p name answers to its end; nothing when it is no such answer.
std::optional<BackgroundRequest> kindAnsweredBy(std::string_view name)
{
    const auto* const found = std::find_if(
        protocol::kCommands.begin(), protocol::kCommands.end(),
        [name](const protocol::CommandDescription& command) { return isAnsweredLater(command) && name == command.answer; });
    return found != protocol::kCommands.end() ? kindOf(found->name) : std::nullopt;
}

std::string textOf(const Json::Value& request, const char* key)
{
    const Json::Value text = request.isObject() ? request.get(key, "") : Json::Value("");
    return text.isString() ? text.asString() : "";
}

} // namespace

std::uint64_t RunningRequests::accepted(const std::string& command, const Json::Value& request)
{
    const auto kind = kindOf(command);
    if (!kind) {
        return 0;
    }
    requestOf(*kind) = {++m_count, textOf(request, "channelId"), textOf(request, "reqId")};
    return m_count;
}

std::optional<RequestEnded> RunningRequests::published(const std::string& channel, const std::string& name,
                                                       const Json::Value& body)
{
    const auto kind = kindAnsweredBy(name);
    if (!kind) {
        return std::nullopt;
    }
    const Request& request = requestOf(*kind);
    return end(*kind, request.channel == channel && request.reqId == textOf(body, "reqId"));
}

std::optional<RequestEnded> RunningRequests::dropped(BackgroundRequest kind)
{
    return end(kind, false);
}

std::optional<RequestEnded> RunningRequests::end(BackgroundRequest kind, bool answered)
{
    const Request request = std::exchange(requestOf(kind), {});
    if (request.number == 0) {
        return std::nullopt;
    }
    const std::string command(kCommands.at(static_cast<std::size_t>(kind)));
    return RequestEnded{request.number, command, request.channel, request.reqId, answered};
}

} // namespace desktop
