#pragma once

#include "platform/FakePlatform.h"
#include "storage/CStorageMediaPlugin.h"
#include "support/Journal.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// The plugin with its state open to tests.
class ExposedPlugin : public tvfirmware::CStorageMediaPlugin {
public:
    using CStorageMediaPlugin::m_directoryChanging;
    using CStorageMediaPlugin::m_intList;
    using CStorageMediaPlugin::m_itemCountPerPage;
    using CStorageMediaPlugin::m_pagingPosition;
    using CStorageMediaPlugin::m_pPublishCallback;
    using CStorageMediaPlugin::m_requestSlots;
    using CStorageMediaPlugin::m_scanChannel;
    using CStorageMediaPlugin::m_thumbnailChannel;
    using CStorageMediaPlugin::m_thumbnailIndex;
    using CStorageMediaPlugin::m_thumbnailTotal;
};

/// One use of the plugin, played at every log level from 0 to 4 on a fresh plugin, and held against what must happen.
class Scenario {
public:
    using Command = bool (tvfirmware::CStorageMediaPlugin::*)(Json::Value*, Json::Value*);

    /// @p command called on the host's thread; its lines carry @p function.
    Scenario(const std::string& function, Command command);
    /// Event @p eventId with @p data.
    Scenario(int eventId, void* data);
    /// Anything else.
    Scenario(const std::string& function, std::function<void(ExposedPlugin&)> action);

    Scenario& request(const std::string& json);
    Scenario& nullRequest();
    Scenario& reply(const std::string& json);
    Scenario& nullReply();
    /// Scripts the platform and sets the plugin's state before the action.
    Scenario& given(std::function<void(FakePlatform&, ExposedPlugin&)> setUp);

    Scenario& happens(std::vector<Happening> journal);
    Scenario& succeeds();
    Scenario& fails();
    /// What the request holds afterwards; as it came when not said.
    Scenario& leavesRequest(const std::string& typedJson);
    /// What the reply holds afterwards; as it came when not said.
    Scenario& leavesReply(const std::string& typedJson);
    /// Further expectations on the plugin's state.
    Scenario& afterwards(std::function<void(const ExposedPlugin&)> look);

    /// Plays it at every level.
    void check() const;
    /// Plays it once at level @p level.
    void checkAt(int level) const;

private:
    std::string m_function;
    Command m_command = nullptr;
    std::function<void(ExposedPlugin&)> m_action;
    std::optional<std::string> m_request = "{}";
    std::optional<std::string> m_reply = R"({"kept":"as it was"})";
    std::function<void(FakePlatform&, ExposedPlugin&)> m_setUp;
    std::vector<Happening> m_journal;
    std::optional<bool> m_result;
    std::optional<std::string> m_requestAfter;
    std::optional<std::string> m_replyAfter;
    std::function<void(const ExposedPlugin&)> m_look;
};
