#pragma once

#include <json/json.h>

#include <string>

namespace testsupport {

/// The protocol's description, as protocol/storagemedia.json has it.
const Json::Value& protocol();

/// The description of the command that @p handler serves; null when there is none.
const Json::Value& describedCommand(const std::string& handler);

/// Fails the running test when @p reply, left by a successful call of @p handler on @p before, is not as described. Members
/// that serve no command pass.
void expectReplyAsDescribed(const std::string& handler, const Json::Value& before, const Json::Value& reply);

/// Fails the running test when no notification of this form, name and body is described.
void expectNotificationAsDescribed(const std::string& source, const std::string& name, const Json::Value& body);

} // namespace testsupport
