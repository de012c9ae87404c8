#include "fuzz/Player.h"

#include "fuzz/EventParameter.h"
#include "fuzz/PlatformAnswers.h"

#include "plugin/CommandHash.h"
#include "plugin/CommandTable.h"
#include "plugin/StorageMediaPlugin.h"
#include "protocol/ProtocolTable.h"
#include "storage/CStorageMediaPlugin.h"
#include "support/TypedJson.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>

namespace {

using testsupport::typed;

constexpr int kMostSteps = 100;

Player* current = nullptr;

void require(bool holds, const char* rule, const std::string& seen)
{
    if (!holds) {
        std::fprintf(stderr, "broken: %s; seen: %s\n", rule, seen.c_str());
        std::abort();
    }
}

Json::Value parsed(const std::string& text)
{
    static const std::unique_ptr<Json::CharReader> reader = [] {
        Json::CharReaderBuilder builder;
        builder["allowSpecialFloats"] = true;
        builder["collectComments"] = false;
        return std::unique_ptr<Json::CharReader>(builder.newCharReader());
    }();
    Json::Value value;
    std::string errors;
    reader->parse(text.data(), text.data() + text.size(), &value, &errors);
    return value;
}

/// The number at the start of @p text, which is left with what follows.
int takeNumber(std::string& text)
{
    char* end = nullptr;
    const long number = std::strtol(text.c_str(), &end, 10);
    text.erase(0, static_cast<std::size_t>(end - text.c_str()));
    return static_cast<int>(number);
}

/// Whether the reply of a command that succeeded is what the manager filled, of any type.
bool repliesWhatTheManagerFills(Handler handler)
{
    using Plugin = tvfirmware::CStorageMediaPlugin;
    return handler == &Plugin::enterMmBrowser || handler == &Plugin::dlnaEnterMmBrowser || handler == &Plugin::getPlayMode ||
           handler == &Plugin::getCurAllOptions;
}

/// The notifications that events lead to: broadcasts, or those that answer on a request's channel.
std::set<std::string> notificationNames(bool broadcasts)
{
    std::set<std::string> names;
    for (const protocol::NotificationDescription& notification : protocol::kNotifications) {
        if (notification.isFromEvent && notification.isBroadcast == broadcasts) {
            names.insert(notification.name);
        }
    }
    return names;
}

const std::set<std::string> kBroadcasts = notificationNames(true);

// The thumbnail's names are the request's event, empty before the first, and an ending.
const std::set<std::string> kAnswers = [] {
    std::set<std::string> names = notificationNames(false);
    names.insert({".fragment", ".complete"});
    return names;
}();

} // namespace

Player::Player()
{
    current = this;
    Plugin_Load();
    setCallback(true);
}

Player::~Player()
{
    Plugin_Unload();
    current = nullptr;
}

void Player::play(std::string_view script, std::string_view kinds)
{
    for (int steps = 0; steps < kMostSteps && !script.empty(); ++steps) {
        const std::string line(script.substr(0, script.find('\n')));
        script.remove_prefix(std::min(line.size() + 1, script.size()));
        const bool isNumber = std::isdigit(static_cast<unsigned char>(line[0])) != 0;
        const char kind = isNumber ? '0' : line[0];
        if (!line.empty() && kinds.find(kind) != std::string_view::npos) {
            step(kind, line);
        }
    }
}

void Player::step(char kind, const std::string& line)
{
    m_published = 0;
    std::string rest = kind == '0' ? line : line.substr(1);
    try {
        switch (kind) {
        case '0':
        case '~': {
            const auto number = static_cast<unsigned int>(takeNumber(rest));
            execute(number, rest, kind == '0');
            break;
        }
        case '!': {
            const int event = takeNumber(rest);
            deliver(event, rest);
            break;
        }
        case '=':
            answerWith(m_platform, parsed(rest));
            break;
        default:
            setCallback(kind == '+');
        }
    } catch (const Json::Exception&) {
        // A value that is no object, or no text, where the plugin asks the JSON library for one: the library's own error.
    }
    require(m_platform.storageManager.use_count() == 1 && m_platform.systemManager.use_count() == 1,
            "no manager's handle outlives the call", line);
    m_platform.takeJournal(); // not looked at; dropped so that it does not grow
}

void Player::execute(unsigned int number, const std::string& json, bool withReply)
{
    const CommandRow& row = gCmdStringMap[number % gCmdStringMap.size()];
    Json::Value request = parsed(json);
    if (request.isObject()) {
        request["CmdHash"] = tvfirmware::commandHash(row.name);
        m_channels.insert(request["channelId"].isString() ? request["channelId"].asCString() : "");
    }
    Json::Value reply(Json::objectValue);
    reply["kept"] = "as it was";
    const std::string before = typed(reply);
    const bool result = Plugin_Execute(row.name, &request, withReply ? &reply : nullptr);
    require(result || typed(reply) == before, "a command that fails leaves the reply", typed(reply));
    require(!result || reply.isObject() || repliesWhatTheManagerFills(row.handler), "a reply is an object", typed(reply));
    require(!result || row.handler != nullptr, "the last row stands for no command", row.name);
    require(m_published == 0, "commands publish nothing", row.name);
}

void Player::deliver(int event, const std::string& json)
{
    EventParameter parameter(event, parsed(json));
    if (!parameter.isDefined() || (!m_hasCallback && !parameter.isForMountNotifications())) {
        return;
    }
    m_platform.listener(event, parameter.data());
    require(m_published <= 1, "an event publishes once at most", std::to_string(event));
    require(m_published == 0 || m_hasCallback, "nothing is published without a callback", std::to_string(event));
    require(parameter.isUntouched(), "the middleware's record stays as it was", std::to_string(event));
}

void Player::setCallback(bool set)
{
    m_hasCallback = set;
    Server_PublishNotification_Callback(set ? &Player::publish : nullptr);
}

void Player::publish(const char* source, const char* name, Json::Value& body)
{
    ++current->m_published;
    current->checkPublication(source, name, body);
    body = Json::Value(); // a host may keep the body and leave nothing behind
}

void Player::checkPublication(const std::string& source, const std::string& name, const Json::Value& body)
{
    if (kAnswers.count(name) != 0) {
        require(m_channels.count(source) != 0, "an answer goes to a channel that a request has named", source);
        require(body.isObject() && body["reqId"].isString(), "an answer carries the request's id", typed(body));
    } else {
        require(kBroadcasts.count(name) != 0, "notifications have known names", name);
        require(source == "storagemedia", "broadcasts carry the plugin's name", source);
    }
}

int playInput(const std::uint8_t* data, std::size_t size, std::string_view kinds)
{
    Player().play({reinterpret_cast<const char*>(data), size}, kinds);
    return 0;
}
