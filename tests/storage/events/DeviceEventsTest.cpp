#include "support/CaseName.h"
#include "support/Scenario.h"
#include "support/TypedJson.h"

#include <gtest/gtest.h>

namespace {

using testsupport::caseName;
using testsupport::parsed;
using tvfirmware::CStorageMediaPlugin;

Journal published(const std::string& notification, const std::string& body)
{
    return {did("system manager"), did("getScreenStatus(0)"), broadcast(notification, body)};
}

struct Removal {
    std::string device;
    int devType; ///< read, or 0
    bool typeReadable;
    std::string path;
    std::string notification;
};

class DeviceRemoved : public testing::TestWithParam<Removal> {};

TEST_P(DeviceRemoved, Reported_IsAnUnmountUnderItsPathTwice)
{
    const Removal& removal = GetParam();
    Json::Value device = parsed(removal.device);
    Journal journal = {info("nEvt : 2"), readInt("devType")};
    if (!removal.typeReadable) {
        journal.push_back(dbg("unknown devType set default"));
    }
    journal = journal + Journal{dbg("Device :" + removal.path + " removed!"),
                                in("onUsbMountStatus", dbg("USB-DEVICE:(" + removal.path + ") unmount")),
                                broadcast(removal.notification,
                                          R"({"name":")" + removal.path + R"(","path":")" + removal.path + R"("})")};
    Scenario(2, &device).happens(journal).check();
}

INSTANTIATE_TEST_SUITE_P(
    Devices, DeviceRemoved,
    testing::Values(Removal{R"({"devType":0,"path":"/mnt/a"})", 0, true, "/mnt/a", "storagemedia.usb.unmount"},
                    Removal{R"({"devType":1,"path":"/mnt/a"})", 1, true, "/mnt/a", "storagemedia.dlna.unmount"},
                    Removal{R"({"devType":2,"path":"/servers/a"})", 2, true, "/servers/a", "storagemedia.dlna.unmount"},
                    Removal{R"({"devType":-1,"path":"/mnt/a"})", -1, true, "/mnt/a", "storagemedia.usb.unmount"},
                    Removal{R"({"path":"/mnt/a"})", 0, false, "/mnt/a", "storagemedia.usb.unmount"},
                    Removal{R"({"devType":"1","path":"/mnt/a"})", 0, false, "/mnt/a", "storagemedia.usb.unmount"},
                    Removal{R"({"devType":0})", 0, true, "", "storagemedia.usb.unmount"},
                    Removal{R"({"devType":0,"path":null})", 0, true, "", "storagemedia.usb.unmount"},
                    Removal{R"({"devType":0,"path":7})", 0, true, "7", "storagemedia.usb.unmount"},
                    Removal{R"({})", 0, false, "", "storagemedia.usb.unmount"}),
    [](const auto& row) { return caseName(row.index, row.param.device); });

const char kUsbList[] =
    R"({"devType":0,"devcount":2,"devlist":[{"name":"A","path":"/mnt/a"},{"name":"B","path":"/mnt/b"}]})";

TEST(DeviceList, UsbDevices_AreOneMountWithTheWholeList)
{
    Json::Value devices = parsed(kUsbList);
    Scenario(3, &devices)
        .happens(Journal{info("nEvt : 3"), readInt("devType"), readInt("devcount"), dbg("Total 2 device(s)"),
                         dbg("devid:0 -- /mnt/a/A"), dbg("devid:1 -- /mnt/b/B")} +
                 published("storagemedia.usb.mount", kUsbList))
        .check();
}

TEST(DeviceList, LastPathIsAServer_IsADlnaMount)
{
    const std::string list =
        R"({"devType":0,"devcount":2,"devlist":[{"name":"A","path":"/mnt/a"},{"name":"S","path":"/mnt/servers/s"}]})";
    Json::Value devices = parsed(list);
    Scenario(3, &devices)
        .happens(Journal{info("nEvt : 3"), readInt("devType"), readInt("devcount"), dbg("Total 2 device(s)"),
                         dbg("devid:0 -- /mnt/a/A"), dbg("devid:1 -- /mnt/servers/s/S"), dbg("dlna mount event")} +
                 published("storagemedia.dlna.mount", list))
        .check();
}

TEST(DeviceList, OnlyTheFirstPathIsAServer_IsAUsbMount)
{
    const std::string list =
        R"({"devType":0,"devcount":2,"devlist":[{"name":"S","path":"/servers/s"},{"name":"A","path":"/mnt/a"}]})";
    Json::Value devices = parsed(list);
    Scenario(3, &devices)
        .happens(Journal{info("nEvt : 3"), readInt("devType"), readInt("devcount"), dbg("Total 2 device(s)"),
                         dbg("devid:0 -- /servers/s/S"), dbg("devid:1 -- /mnt/a/A")} +
                 published("storagemedia.usb.mount", list))
        .check();
}

TEST(DeviceList, TypeOne_IsADlnaMountWhateverThePaths)
{
    const std::string list = R"({"devType":1,"devcount":1,"devlist":[{"name":"A","path":"/mnt/a"}]})";
    Json::Value devices = parsed(list);
    Scenario(3, &devices)
        .happens(Journal{info("nEvt : 3"), readInt("devType"), readInt("devcount"), dbg("Total 1 device(s)"),
                         dbg("devid:0 -- /mnt/a/A"), dbg("dlna mount event")} +
                 published("storagemedia.dlna.mount", list))
        .check();
}

TEST(DeviceList, CountBelowTheList_BoundsTheWalkOnlyWhileDebugLinesArePrinted)
{
    const std::string list =
        R"({"devType":0,"devcount":1,"devlist":[{"name":"A","path":"/mnt/a"},{"name":"S","path":"/servers/s"}]})";
    Json::Value devices = parsed(list);
    Scenario(3, &devices)
        .happens(Journal{info("nEvt : 3"), readInt("devType"), readInt("devcount"), dbg("Total 1 device(s)"),
                         dbg("devid:0 -- /mnt/a/A")} +
                 published("storagemedia.usb.mount", list))
        .checkAt(0);
    for (int level = 1; level <= 4; ++level) {
        Scenario(3, &devices)
            .happens(Journal{info("nEvt : 3"), readInt("devType"), readInt("devcount")} +
                     published("storagemedia.dlna.mount", list))
            .checkAt(level);
    }
}

TEST(DeviceList, DebugLinesThatStartDuringTheWalk_CountFromThere)
{
    const std::string list = R"({"devType":0,"devcount":1,"devlist":[{"name":"A","path":"/a"},{"name":"B","path":"/b"},)"
                             R"({"name":"S","path":"/servers/s"}]})";
    Json::Value devices = parsed(list);
    Scenario(3, &devices)
        .given([](FakePlatform& platform, ExposedPlugin&) {
            platform.logLevels = {4, 4, 4, 0};
        })
        .happens(Journal{readInt("devType"), readInt("devcount"), printed("[DBG][onRecvEvent]devid:0 -- /b/B\r\n")} +
                 published("storagemedia.usb.mount", list))
        .checkAt(4);
}

TEST(DeviceList, CountAboveTheList_WalksTheList)
{
    const std::string list = R"({"devType":0,"devcount":9,"devlist":[{"name":"A","path":"/mnt/a"}]})";
    Json::Value devices = parsed(list);
    Scenario(3, &devices)
        .happens(Journal{info("nEvt : 3"), readInt("devType"), readInt("devcount"), dbg("Total 9 device(s)"),
                         dbg("devid:0 -- /mnt/a/A")} +
                 published("storagemedia.usb.mount", list))
        .check();
}

TEST(DeviceList, CountZeroOrNegative_WalksNothing)
{
    for (const std::string count : {"0", "-1"}) {
        const std::string list = R"({"devType":0,"devcount":)" + count + R"(,"devlist":[{"name":"S","path":"/servers/s"}]})";
        Json::Value devices = parsed(list);
        Scenario(3, &devices)
            .happens(
                Journal{info("nEvt : 3"), readInt("devType"), readInt("devcount"), dbg("Total " + count + " device(s)")} +
                published("storagemedia.usb.mount", list))
            .check();
    }
}

TEST(DeviceList, EmptyOrMissingList_IsDecidedByTheTypeAlone)
{
    for (const std::string devlist : {R"(,"devlist":[])", "", R"(,"devlist":null)", R"(,"devlist":"text")"}) {
        const std::string usb = R"({"devType":2,"devcount":1)" + devlist + "}";
        Json::Value devices = parsed(usb);
        Scenario(3, &devices)
            .happens(Journal{info("nEvt : 3"), readInt("devType"), readInt("devcount"), dbg("Total 1 device(s)")} +
                     published("storagemedia.usb.mount", usb))
            .check();
        const std::string dlna = R"({"devType":1,"devcount":1)" + devlist + "}";
        devices = parsed(dlna);
        Scenario(3, &devices)
            .happens(Journal{info("nEvt : 3"), readInt("devType"), readInt("devcount"), dbg("Total 1 device(s)"),
                             dbg("dlna mount event")} +
                     published("storagemedia.dlna.mount", dlna))
            .check();
    }
}

TEST(DeviceList, DeviceWithoutPathOrName_HasEmptyOnes)
{
    const std::string list = R"({"devType":0,"devcount":2,"devlist":[{"name":"S","path":"/servers/s"},{}]})";
    Json::Value devices = parsed(list);
    Scenario(3, &devices)
        .happens(Journal{info("nEvt : 3"), readInt("devType"), readInt("devcount"), dbg("Total 2 device(s)"),
                         dbg("devid:0 -- /servers/s/S"), dbg("devid:1 -- /")} +
                 published("storagemedia.usb.mount", list))
        .check();
}

TEST(DeviceList, PathAndNameOfOtherTypes_AreTakenAsText)
{
    const std::string list = R"({"devType":0,"devcount":2,"devlist":[{"name":true,"path":7},{"name":null,"path":-3}]})";
    Json::Value devices = parsed(list);
    Scenario(3, &devices)
        .happens(Journal{info("nEvt : 3"), readInt("devType"), readInt("devcount"), dbg("Total 2 device(s)"),
                         dbg("devid:0 -- 7/true"), dbg("devid:1 -- -3/")} +
                 published("storagemedia.usb.mount", list))
        .check();
}

TEST(DeviceList, PathThatIsNoText_IsTheLibrarysError)
{
    for (const char* path : {"{}", "[]"}) {
        for (const char* key : {"path", "name"}) {
            Json::Value devices = parsed(R"({"devType":0,"devcount":1,"devlist":[{}]})");
            devices["devlist"][0][key] = parsed(path);
            Scenario("onRecvEvent",
                     [&devices](ExposedPlugin&) {
                         EXPECT_THROW(CStorageMediaPlugin::onRecvEvent(3, &devices), Json::LogicError);
                     })
                .happens({info("nEvt : 3"), readInt("devType"), readInt("devcount"), dbg("Total 1 device(s)")})
                .check();
        }
    }
}

TEST(DeviceList, TypeUnreadable_CountsAsZero)
{
    const std::string list = R"({"devType":"1","devcount":0})";
    Json::Value devices = parsed(list);
    Scenario(3, &devices)
        .happens(Journal{info("nEvt : 3"), readInt("devType"), dbg("unknown devType set default"), readInt("devcount"),
                         dbg("Total 0 device(s)")} +
                 published("storagemedia.usb.mount", list))
        .check();
}

TEST(DeviceList, CountUnreadable_IsDropped)
{
    for (const char* list : {R"({"devType":1,"devlist":[]})", R"({"devType":1,"devcount":"2"})"}) {
        Json::Value devices = parsed(list);
        Scenario(3, &devices)
            .happens({info("nEvt : 3"), readInt("devType"), readInt("devcount"), dbg("unknown devcount")})
            .check();
    }
}

TEST(DeviceEvents, NoCallback_PublishNothingAndDoNotFail)
{
    const auto withoutCallback = [](FakePlatform&, ExposedPlugin& plugin) { plugin.m_pPublishCallback = nullptr; };
    Json::Value devices = parsed(R"({"devType":0,"devcount":0})");
    Scenario(3, &devices)
        .given(withoutCallback)
        .happens({info("nEvt : 3"), readInt("devType"), readInt("devcount"), dbg("Total 0 device(s)")})
        .check();
    Scenario(1, kNoData)
        .given(withoutCallback)
        .happens({info("nEvt : 1"), dbg("<===============SOCMW_MM_EVENT_USB_DEVICE_MOUNT==============>")})
        .check();
}

} // namespace
