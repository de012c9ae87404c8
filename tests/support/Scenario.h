#pragma once

#include "platform/FakePlatform.h"
#include "support/Journal.h"
#include "support/PluginState.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// What stands for the status of refusedBy() in the text of a happening.
constexpr char kStatus[] = "<status>";

/// The parameter of an event without one.
constexpr void* kNoData = nullptr;

/// One use of the plugin, played on a fresh plugin with odd values in every field, and held against what must happen: at
/// every log level from 0 to 4, with readers that leave their output alone when they fail and with readers that do not.
class Scenario {
public:
    using Command = bool (tvfirmware::CStorageMediaPlugin::*)(Json::Value*, Json::Value*);

    /// @p command called on the host's thread; its lines carry @p function.
    Scenario(const std::string& function, Command command);
    /// Event @p eventId with @p data.
    Scenario(int eventId, void* data);
    /// The same with an object, which must stay as it was.
    Scenario(int eventId, Json::Value* object);
    /// Anything else.
    Scenario(const std::string& function, std::function<void(ExposedPlugin&)> action);

    Scenario& request(const std::string& json);
    Scenario& nullRequest();
    Scenario& reply(const std::string& json);
    Scenario& nullReply();
    /// Scripts the platform and sets the plugin's state before the action.
    Scenario& given(std::function<void(FakePlatform&, ExposedPlugin&)> setUp);

    /// Plays with @p operation returning a status above 0, and once more with one below 0; kStatus stands for it.
    Scenario& refusedBy(const std::string& operation);
    /// Everything that happens, changes of the plugin's fields too.
    Scenario& happens(Journal journal);
    Scenario& succeeds();
    Scenario& fails();
    /// What the request holds afterwards; as it came when not said.
    Scenario& leavesRequest(const std::string& typedJson);
    /// What the reply holds afterwards; as it came when not said.
    Scenario& leavesReply(const std::string& typedJson);
    /// Further expectations.
    Scenario& afterwards(std::function<void()> look);

    /// Plays it at every level.
    void check() const;
    /// Plays it at level @p level.
    void checkAt(int level) const;

private:
    /// What differs between two plays.
    struct Conditions {
        int level;
        bool readersWriteJunk;
        int status; ///< of the operation that refuses
    };
    void play(const Conditions& conditions) const;
    void act(ExposedPlugin& plugin) const;

    std::string m_function;
    Command m_command = nullptr;
    std::function<void(ExposedPlugin&)> m_action;
    std::optional<std::string> m_request = "{}";
    std::optional<std::string> m_reply = R"({"kept":"as it was"})";
    std::function<void(FakePlatform&, ExposedPlugin&)> m_setUp;
    Journal m_journal;
    std::optional<bool> m_result;
    std::optional<std::string> m_requestAfter;
    std::optional<std::string> m_replyAfter;
    std::string m_refusing; ///< operation; empty: none
    std::function<void()> m_look;
};
