#include "plugin/CommandHash.h"
#include "plugin/CommandTable.h"
#include "plugin/StorageMediaPlugin.h"

#include "support/Scenario.h"
#include "support/TypedJson.h"

#include <gtest/gtest.h>

namespace {

using testsupport::typed;

/// The plugin as the host holds it: loaded through its entry points.
class LoadedPlugin : public testing::Test {
protected:
    LoadedPlugin() { Plugin_Load(); }
    ~LoadedPlugin() override { Plugin_Unload(); }

    std::string journal() { return normalised(platform.takeJournal()); }

    FakePlatform platform;
};

const Journal kConstruction = {
    info("Check dir first!"),
    did(R"(access("/mtd_rwarea/apdat/Thumbnaildata/Mass", 0))"),
    info("run: mkdir -p /mtd_rwarea/apdat/Thumbnaildata/Mass"),
    did(R"(system("mkdir -p /mtd_rwarea/apdat/Thumbnaildata/Mass"))"),
    info("Check dir first!"),
    did(R"(access("/mtd_rwarea/apdat/Thumbnaildata/Sing", 0))"),
    info("run: mkdir -p /mtd_rwarea/apdat/Thumbnaildata/Sing"),
    did(R"(system("mkdir -p /mtd_rwarea/apdat/Thumbnaildata/Sing"))"),
    in("CStorageMediaPlugin", dbg("[TVFW::CStoragePlugin] CREATE")),
    manager(),
    did("setListener()"),
};

TEST(EntryPoints, GetId_InAnyState_IsTen)
{
    EXPECT_EQ(Plugin_GetId(), 10);
}

TEST(EntryPoints, Header_PointsAtTheName)
{
    EXPECT_STREQ(PLUGIN_HEADER_STORAGEMEDIA, "storagemedia");
}

TEST(EntryPoints, RecvNotificationBeforeLoad_LogsTheIdAndReturnsOne)
{
    FakePlatform platform;
    EXPECT_EQ(Plugin_RecvNotification(5, nullptr), 1);
    EXPECT_EQ(platform.takeJournal(), "<log FRAMEWORK 0 [TVFW::StoragePlugin] storage plugin Plugin_RecvNotification: 5>\n");
}

TEST(EntryPoints, NotificationToPluginBeforeLoad_LogsThePointer)
{
    FakePlatform platform;
    Server_NotificationToPlugin_Callback(reinterpret_cast<void*>(0x1f2e));
    EXPECT_EQ(platform.takeJournal(),
              "<log FRAMEWORK 0 [TVFW::StoragePlugin] storage plugin Server_NotificationToPlugin_Callback: 0x1f2e>\n");
}

TEST(EntryPoints, Load_AtEveryLevel_ConstructsInOrderAndReturnsTheName)
{
    for (int level = 0; level <= 4; ++level) {
        FakePlatform platform;
        platform.logLevel = level;
        EXPECT_EQ(Plugin_Load(), PLUGIN_HEADER_STORAGEMEDIA);
        const auto expected = Journal{did("log FRAMEWORK 1 [TVFW::StoragePlugin] Plugin_Load")} + kConstruction;
        EXPECT_EQ(normalised(platform.takeJournal()), render(expected, "thumbnailBUffDirInit", level));
        EXPECT_EQ(platform.listener, &tvfirmware::CStorageMediaPlugin::onRecvEvent);
        EXPECT_EQ(platform.storageManager.use_count(), 1) << "a manager handle was kept";
        Plugin_Unload();
    }
}

TEST(EntryPoints, Load_ReturnsWhatTheHeaderPointsAt)
{
    FakePlatform platform;
    static const char kOther[] = "renamed";
    const char* const name = PLUGIN_HEADER_STORAGEMEDIA;
    PLUGIN_HEADER_STORAGEMEDIA = kOther;
    EXPECT_EQ(Plugin_Load(), kOther);
    PLUGIN_HEADER_STORAGEMEDIA = name;
    Plugin_Unload();
}

TEST(EntryPoints, Load_FillsTheIndex)
{
    FakePlatform platform;
    gCmdListIndexMap.clear();
    Plugin_Load();
    EXPECT_EQ(gCmdListIndexMap.size(), 47U);
    Plugin_Unload();
}

TEST(EntryPoints, Load_FillsTheIndexBehindTheConstruction)
{
    FakePlatform platform;
    gCmdListIndexMap.clear();
    platform.onListener = [] { EXPECT_TRUE(gCmdListIndexMap.empty()); };
    Plugin_Load();
    Plugin_Unload();
}

TEST(EntryPoints, Load_ThatThrows_KeepsThePluginThatWasLoaded)
{
    FakePlatform platform;
    Plugin_Load();
    auto* const loaded = tvfirmware::CStorageMediaPlugin::m_pThisControl;
    auto manager = std::exchange(platform.storageManager, nullptr);
    platform.failHandles = true;
    EXPECT_THROW(Plugin_Load(), std::runtime_error);
    platform.failHandles = false;
    platform.storageManager = std::move(manager);
    platform.takeJournal();

    // The callback goes to the instance that was loaded before.
    Server_PublishNotification_Callback(recordPublication);
    tvfirmware::CStorageMediaPlugin::m_pThisControl = loaded;
    platform.listener(52, nullptr);
    EXPECT_EQ(platform.takeJournal(), "<publish storagemedia storagemedia.set.usb.source null>\n");
    Plugin_Unload();
}

TEST(EntryPoints, SecondLoad_MakesAnotherInstanceAndKeepsTheIndex)
{
    FakePlatform platform;
    Plugin_Load();
    auto* const first = tvfirmware::CStorageMediaPlugin::m_pThisControl;
    platform.takeJournal();
    Plugin_Load();
    EXPECT_NE(tvfirmware::CStorageMediaPlugin::m_pThisControl, first);
    EXPECT_NE(platform.takeJournal().find("<setListener()>"), std::string::npos) << "registered once more";
    EXPECT_EQ(gCmdListIndexMap.size(), 47U);
    Plugin_Unload();
    delete first; // the second load forgot it
}

TEST(EntryPoints, Unload_LogsAndDestroys)
{
    FakePlatform platform;
    Plugin_Load();
    platform.takeJournal();
    platform.logLevel = 0;
    Plugin_Unload();
    EXPECT_EQ(normalised(platform.takeJournal()), "<log FRAMEWORK 0 [TVFW::StoragePlugin] storage plugin Plugin_Unload>\n"
                                                  "[DBG][~CStorageMediaPlugin][TVFW::~CStorageMediaPlugin] DELETE\r\n");
}

TEST(EntryPoints, Unload_KeepsTheIndex)
{
    FakePlatform platform;
    Plugin_Load();
    const auto loaded = gCmdListIndexMap;
    Plugin_Unload();
    EXPECT_EQ(gCmdListIndexMap, loaded);
    EXPECT_EQ(gCmdListIndexMap.size(), 47U);
}

TEST_F(LoadedPlugin, GetId_IsTenAndNothingElse)
{
    platform.takeJournal();
    EXPECT_EQ(Plugin_GetId(), 10);
    EXPECT_EQ(journal(), "");
}

TEST(EntryPoints, UnloadAndLoadAgain_DispatchesAsBefore)
{
    FakePlatform platform;
    Plugin_Load();
    Plugin_Unload();
    Plugin_Load();
    EXPECT_EQ(gCmdListIndexMap.size(), 47U);
    Json::Value request;
    Json::Value reply;
    request["CmdHash"] = tvfirmware::str2hashid("storagemedia.video.clear.resume");
    EXPECT_TRUE(Plugin_Execute("storagemedia.video.clear.resume", &request, &reply));
    Plugin_Unload();
}

TEST_F(LoadedPlugin, SetCallback_LogsThePointerAndPublishesThroughIt)
{
    platform.takeJournal();
    platform.logLevel = 0;
    Server_PublishNotification_Callback(recordPublication);
    char pointer[32] = {};
    std::snprintf(pointer, sizeof pointer, "%p", reinterpret_cast<void*>(recordPublication));
    EXPECT_EQ(journal(), std::string("[DBG][setCallback]setCallback: ") + pointer + "\r\n");

    platform.logLevel = 4;
    platform.listener(51, nullptr);
    EXPECT_EQ(journal(), "<publish storagemedia storagemedia.fastboot.superdemo null>\n");
}

TEST_F(LoadedPlugin, Execute_NullOrWrongName_DispatchesByTheHashAlone)
{
    for (const char* name : {static_cast<const char*>(nullptr), "wrong", "storagemedia.folder.chgdir"}) {
        platform.takeJournal();
        Json::Value request;
        Json::Value reply;
        request["CmdHash"] = tvfirmware::str2hashid("storagemedia.video.clear.resume");
        EXPECT_TRUE(Plugin_Execute(name, &request, &reply));
        EXPECT_EQ(journal(), "<log FRAMEWORK 0 storageMedia plugin Plugin_Execute: " + std::string(name ? name : "") +
                                 ">\n<storage manager>\n<videoClearResume()>\n");
    }
}

TEST_F(LoadedPlugin, Execute_DeviceUsage_ReadsTheRequestAndFillsTheReply)
{
    struct statfs fs = {};
    fs.f_bsize = 1024;
    fs.f_blocks = 2;
    fs.f_bfree = 1;
    platform.fileSystem = fs;
    Json::Value request = testsupport::parsed(R"({"path":"/mnt/usb"})");
    request["CmdHash"] = tvfirmware::str2hashid("storagemedia.get.device.usage");
    const std::string requestBefore = typed(request);
    Json::Value reply;
    EXPECT_TRUE(Plugin_Execute("", &request, &reply));
    EXPECT_EQ(typed(reply), R"({"free":"1.00KB","total":"2.00KB","used":"1.00KB","useper":"50%"})");
    EXPECT_EQ(typed(request), requestBefore);
}

TEST_F(LoadedPlugin, Execute_HandlerFails_ReturnsItsResult)
{
    platform.statuses["videoClearResume"] = 3;
    Json::Value request;
    request["CmdHash"] = tvfirmware::str2hashid("storagemedia.video.clear.resume");
    EXPECT_FALSE(Plugin_Execute("", &request, nullptr));
}

TEST_F(LoadedPlugin, Execute_UnknownHash_ReturnsFalseAndTouchesNothing)
{
    platform.takeJournal();
    platform.logLevel = 0;
    Json::Value request;
    Json::Value reply = testsupport::parsed(R"({"kept":1})");
    request["CmdHash"] = 12345U;
    EXPECT_FALSE(Plugin_Execute("x", &request, &reply));
    EXPECT_EQ(typed(reply), R"({"kept":1})");
    EXPECT_EQ(typed(request), R"({"CmdHash":12345u})");
    EXPECT_EQ(journal(), "<log FRAMEWORK 0 storageMedia plugin Plugin_Execute: x>\n");
}

TEST_F(LoadedPlugin, Execute_HashZero_IsTheEmptyNameAndCallsNothing)
{
    platform.takeJournal();
    Json::Value request;
    Json::Value reply = testsupport::parsed(R"({"kept":1})");
    request["CmdHash"] = 0;
    EXPECT_FALSE(Plugin_Execute("x", &request, &reply));
    EXPECT_EQ(typed(reply), R"({"kept":1})");
    EXPECT_EQ(journal(), "<log FRAMEWORK 0 storageMedia plugin Plugin_Execute: x>\n");
}

TEST_F(LoadedPlugin, Execute_WithoutHash_LeavesANullMemberInTheRequest)
{
    platform.takeJournal();
    Json::Value request = testsupport::parsed(R"({"other":1})");
    Json::Value reply = testsupport::parsed(R"({"kept":1})");
    EXPECT_FALSE(Plugin_Execute("x", &request, &reply));
    EXPECT_EQ(typed(request), R"({"CmdHash":null,"other":1})");
    EXPECT_EQ(typed(reply), R"({"kept":1})");
    EXPECT_EQ(journal(), "<log FRAMEWORK 0 storageMedia plugin Plugin_Execute: x>\n");
}

TEST_F(LoadedPlugin, Execute_HashThatIsNoNumber_IsTheLibrarysError)
{
    for (const char* hash : {R"("text")", "-1", "{}", "[]"}) {
        Json::Value request;
        request["CmdHash"] = testsupport::parsed(hash);
        platform.takeJournal();
        EXPECT_THROW(Plugin_Execute("x", &request, nullptr), Json::LogicError) << hash;
        EXPECT_EQ(journal(), "<log FRAMEWORK 0 storageMedia plugin Plugin_Execute: x>\n") << "logged before it is read";
    }
}

TEST_F(LoadedPlugin, Execute_HashAsWholeRealNumber_IsConverted)
{
    Json::Value request;
    request["CmdHash"] = static_cast<double>(tvfirmware::str2hashid("storagemedia.video.clear.resume"));
    EXPECT_TRUE(Plugin_Execute("x", &request, nullptr));
}

} // namespace
