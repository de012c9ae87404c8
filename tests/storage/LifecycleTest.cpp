#include "support/Scenario.h"

#include "platform/SocMwEvents.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

TEST(Lifecycle, NewPlugin_HasItsDefaults)
{
    FakePlatform platform;
    const ExposedPlugin plugin;
    EXPECT_EQ(plugin.m_pPublishCallback, nullptr);
    EXPECT_EQ(plugin.m_scanChannel.channel, "");
    EXPECT_EQ(plugin.m_scanChannel.reqId, "");
    EXPECT_EQ(plugin.m_scanChannel.event, "storage.fileScan.complete");
    EXPECT_EQ(plugin.m_scanChannel.filterType, "");
    EXPECT_EQ(plugin.m_scanChannel.extra, "");
    EXPECT_EQ(plugin.m_thumbnailChannel.channel, "");
    EXPECT_EQ(plugin.m_thumbnailChannel.reqId, "");
    EXPECT_EQ(plugin.m_thumbnailChannel.event, "storage.media.thumbnail.complete");
    EXPECT_EQ(plugin.m_thumbnailChannel.extra, "");
    EXPECT_EQ(plugin.m_thumbnailIndex, -1);
    EXPECT_TRUE(plugin.m_intList.empty());
    EXPECT_EQ(plugin.m_itemCountPerPage, 9);
    EXPECT_EQ(plugin.m_pagingPosition, 0);
    EXPECT_FALSE(plugin.m_directoryChanging);
    EXPECT_EQ(std::size(plugin.m_requestSlots), 4U);
    for (const auto& slot : plugin.m_requestSlots) {
        EXPECT_EQ(slot.channel + slot.reqId + slot.event + slot.extra, "");
    }
    EXPECT_EQ(plugin.m_thumbnailTotal, 0);
}

TEST(Lifecycle, NewPlugin_IsTheInstanceThatEventsReach)
{
    FakePlatform platform;
    ExposedPlugin plugin;
    EXPECT_EQ(tvfirmware::CStorageMediaPlugin::m_pThisControl, &plugin);
}

TEST(Lifecycle, EveryCallOfTheConstructor_FindsTheInstanceAndItsDefaults)
{
    FakePlatform platform;
    std::vector<PluginState> states;
    CStorageMediaPlugin::m_pThisControl = nullptr;
    platform.onJournal = [&states] {
        states.push_back(stateOf(static_cast<const ExposedPlugin&>(*CStorageMediaPlugin::m_pThisControl)));
        return std::string();
    };
    const ExposedPlugin plugin;
    platform.onJournal = nullptr;
    EXPECT_EQ(states.size(), 11U)
        << "seven log lines and calls for the directories, the last line, two calls for the listener";
    for (const PluginState& state : states) {
        EXPECT_EQ(state, stateOf(plugin));
    }
}

TEST(Lifecycle, ExistingThumbnailDirectories_AreRemovedFirst)
{
    FakePlatform platform;
    platform.thumbnailDirectoriesExist = true;
    platform.logLevel = 1;
    const ExposedPlugin plugin;
    const std::string mass = "/mtd_rwarea/apdat/Thumbnaildata/Mass";
    const std::string sing = "/mtd_rwarea/apdat/Thumbnaildata/Sing";
    Journal expected;
    for (const std::string& dir : {mass, sing}) {
        expected.insert(expected.end(), {info("Check dir first!"), did("access(\"" + dir + "\", 0)"),
                                         info("dir: " + dir + " exist! remove first!"), info("run: rm -rf " + dir),
                                         did("system(\"rm -rf " + dir + "\")"), info("run: mkdir -p " + dir),
                                         did("system(\"mkdir -p " + dir + "\")")});
    }
    expected.insert(expected.end(), {manager(), did("setListener()")});
    EXPECT_EQ(normalised(platform.takeJournal()), render(expected, "thumbnailBUffDirInit", 1));
}

TEST(Lifecycle, ShellCommandsThatFail_DoNotStopConstruction)
{
    FakePlatform platform;
    platform.statuses["system"] = 256;
    const ExposedPlugin plugin;
    EXPECT_NE(platform.listener, nullptr);
}

TEST(Lifecycle, EventDuringRegistration_FindsTheInstance)
{
    // The listener may be called before the constructor has returned.
    FakePlatform platform;
    platform.logLevel = 0;
    platform.onListener = [] { FakePlatform::instance().listener(0, nullptr); };
    const ExposedPlugin plugin;
    EXPECT_NE(normalised(platform.takeJournal()).find("[DBG][onRecvEvent]Device Plugin!!!\r\n"), std::string::npos);
}

TEST(Lifecycle, Destroyed_LogsAndLeavesTheInstancePointer)
{
    FakePlatform platform;
    tvfirmware::CStorageMediaPlugin* address = nullptr;
    {
        const ExposedPlugin plugin;
        address = tvfirmware::CStorageMediaPlugin::m_pThisControl;
        platform.takeJournal();
        platform.logLevel = 0;
    }
    EXPECT_EQ(normalised(platform.takeJournal()), "[DBG][~CStorageMediaPlugin][TVFW::~CStorageMediaPlugin] DELETE\r\n");
    EXPECT_EQ(tvfirmware::CStorageMediaPlugin::m_pThisControl, address);
}

void another(const char* /*source*/, const char* /*name*/, Json::Value& /*body*/)
{
}

TEST(Lifecycle, Destroyed_EmptiesTheListBeforeItLogs)
{
    FakePlatform platform;
    auto plugin = std::make_unique<ExposedPlugin>();
    fillWithOddValues(*plugin);
    platform.takeJournal();
    {
        const StateWatch watch(*plugin);
        plugin.reset();
    }
    EXPECT_EQ(platform.takeJournal(), "{m_intList = [0 elements]}\n");
}

TEST(Lifecycle, SetCallback_LogsAndStoresAnyPointer)
{
    for (const PublishNotificationCallback callback :
         {PublishNotificationCallback(recordPublication), PublishNotificationCallback(nullptr)}) {
        Scenario("setCallback", [callback](ExposedPlugin& plugin) { plugin.setCallback(callback); })
            .given([](FakePlatform&, ExposedPlugin& plugin) { plugin.m_pPublishCallback = another; })
            .happens({dbg("setCallback: " + pointerText(callback)), changed("m_pPublishCallback", callback)})
            .check();
    }
}

} // namespace
