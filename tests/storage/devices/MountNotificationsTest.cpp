#include "support/CaseName.h"
#include "support/Scenario.h"
#include "support/TypedJson.h"

#include <gtest/gtest.h>

namespace {

using testsupport::caseName;
using tvfirmware::CStorageMediaPlugin;
using tvfirmware::UsbDevStatus;

Journal screen(int before = 0)
{
    return {did("system manager"), did("getScreenStatus(" + std::to_string(before) + ")")};
}

struct PathMount {
    std::string path;
    bool mounted;
    int devType;
    std::string notification;
};

class PathForm : public testing::TestWithParam<PathMount> {
protected:
    std::string path = GetParam().path;
    std::string name = "Stick";
    Happening publication = broadcast(GetParam().notification, R"({"name":"Stick","path":")" + path + R"("})");
};

TEST_P(PathForm, Notified_PublishesPathAndName)
{
    Scenario(
        "NotifyUsbMountStatus",
        [this](ExposedPlugin& plugin) { plugin.NotifyUsbMountStatus(path, name, GetParam().mounted, GetParam().devType); })
        .happens({publication})
        .check();
}

TEST_P(PathForm, ReportedByTheListener_IsLoggedAndPublished)
{
    Scenario("onUsbMountStatus",
             [this](ExposedPlugin&) {
                 CStorageMediaPlugin::onUsbMountStatus(path, name, GetParam().mounted, GetParam().devType);
             })
        .happens({dbg(std::string("USB-DEVICE:(Stick) ") + (GetParam().mounted ? "mount" : "unmount")), publication})
        .check();
}

INSTANTIATE_TEST_SUITE_P(Mounts, PathForm,
                         testing::Values(PathMount{"/mnt/usb", true, 0, "storagemedia.usb.mount"},
                                         PathMount{"/mnt/usb", false, 0, "storagemedia.usb.unmount"},
                                         PathMount{"/mnt/usb", true, 1, "storagemedia.dlna.mount"},
                                         PathMount{"/mnt/usb", false, 1, "storagemedia.dlna.unmount"},
                                         PathMount{"/mnt/servers/a", true, 0, "storagemedia.dlna.mount"},
                                         PathMount{"/mnt/servers/a", false, 0, "storagemedia.dlna.unmount"},
                                         PathMount{"/serversandmore", false, 2, "storagemedia.dlna.unmount"},
                                         PathMount{"servers", true, 2, "storagemedia.usb.mount"},
                                         PathMount{"/server/s", false, -1, "storagemedia.usb.unmount"},
                                         PathMount{"", true, 0, "storagemedia.usb.mount"}),
                         [](const auto& row) {
                             return caseName(row.index, row.param.path + (row.param.mounted ? " mounted" : " unmounted") +
                                                            " Type" + std::to_string(row.param.devType));
                         });

struct StatusMount {
    int status;
    std::string notification;
    std::string body;
};

class StatusForm : public testing::TestWithParam<StatusMount> {
protected:
    Json::Value body = testsupport::parsed(GetParam().body);
    UsbDevStatus status = static_cast<UsbDevStatus>(GetParam().status);
    Happening publication = broadcast(GetParam().notification, GetParam().body);
};

TEST_P(StatusForm, Notified_PublishesTheBodyUnderTheStatusName)
{
    Scenario("", [this](ExposedPlugin& plugin) { plugin.NotifyUsbMountStatus(body, status); })
        .happens(screen() + Journal{publication})
        .check();
}

TEST_P(StatusForm, ReportedByTheListener_IsPublishedWithoutALine)
{
    Scenario("", [this](ExposedPlugin&) { CStorageMediaPlugin::onUsbMountStatus(body, status); })
        .happens(screen() + Journal{publication})
        .check();
}

const char kDevice[] = R"({"name":"A","path":"/a"})";
const char kDevices[] = R"({"devcount":1,"devlist":[{"path":"/a"}]})";

INSTANTIATE_TEST_SUITE_P(Statuses, StatusForm,
                         testing::Values(StatusMount{0, "storagemedia.usb.plugin", "null"},
                                         StatusMount{1, "storagemedia.usb.mount", kDevices},
                                         StatusMount{2, "storagemedia.usb.unmount", kDevice},
                                         StatusMount{3, "storagemedia.dlna.mount", kDevices},
                                         StatusMount{4, "storagemedia.dlna.unmount", kDevice}, StatusMount{5, "", kDevices},
                                         StatusMount{7, "", kDevices}, StatusMount{-1, "", "null"}),
                         [](const auto& row) { return caseName(row.index, "Status" + std::to_string(row.param.status)); });

TEST(MountNotifications, ScreenIsOff_IsSwitchedOnBeforePublishing)
{
    for (const int status : {1, 2, -1}) {
        Json::Value body;
        Scenario("", [&](ExposedPlugin& plugin) { plugin.NotifyUsbMountStatus(body, tvfirmware::USB_DEV_STATUS_MOUNT); })
            .given([status](FakePlatform& platform, ExposedPlugin&) { platform.screenStatus = status; })
            .happens(screen() +
                     Journal{did("system manager"), did("ScreenOff(0)"), broadcast("storagemedia.usb.mount", "null")})
            .check();
    }
}

TEST(MountNotifications, ScreenStatusFails_ItsStatusStillCounts)
{
    Json::Value body;
    Scenario("", [&](ExposedPlugin& plugin) { plugin.NotifyUsbMountStatus(body, tvfirmware::USB_DEV_STATUS_MOUNT); })
        .given([](FakePlatform& platform, ExposedPlugin&) {
            platform.statuses = {{"getScreenStatus", -1}, {"ScreenOff", -1}};
            platform.screenStatus = 1;
        })
        .happens(screen() + Journal{did("system manager"), did("ScreenOff(0)"), broadcast("storagemedia.usb.mount", "null")})
        .check();
}

TEST(MountNotifications, HostThatChangesTheBody_ChangesACopy)
{
    Json::Value body = testsupport::parsed(R"({"a":1})");
    FakePlatform platform;
    ExposedPlugin plugin;
    plugin.m_pPublishCallback = [](const char*, const char*, Json::Value& published) { published["b"] = 2; };
    plugin.NotifyUsbMountStatus(body, tvfirmware::USB_DEV_STATUS_MOUNT);
    EXPECT_EQ(testsupport::typed(body), R"({"a":1})");
}

TEST(MountNotifications, NoCallback_DoesNothing)
{
    const auto withoutCallback = [](FakePlatform& platform, ExposedPlugin& plugin) {
        plugin.m_pPublishCallback = nullptr;
        platform.screenStatus = 1;
    };
    std::string path = "/mnt/usb";
    Json::Value body;
    Scenario("", [&](ExposedPlugin& plugin) { plugin.NotifyUsbMountStatus(path, path, true, 0); })
        .given(withoutCallback)
        .happens({})
        .check();
    Scenario("", [&](ExposedPlugin& plugin) { plugin.NotifyUsbMountStatus(body, tvfirmware::USB_DEV_STATUS_MOUNT); })
        .given(withoutCallback)
        .happens({})
        .check();
    Scenario("onUsbMountStatus", [&](ExposedPlugin& plugin) { plugin.onUsbMountStatus(path, path, true, 0); })
        .given(withoutCallback)
        .happens({dbg("USB-DEVICE:(/mnt/usb) mount")})
        .check();
}

TEST(MountNotifications, NoInstance_DoesNothing)
{
    const auto withoutInstance = [](FakePlatform&, ExposedPlugin&) { CStorageMediaPlugin::m_pThisControl = nullptr; };
    std::string path = "/mnt/usb";
    Json::Value body;
    Scenario("onUsbMountStatus", [&](ExposedPlugin& plugin) { plugin.onUsbMountStatus(path, path, true, 0); })
        .given(withoutInstance)
        .happens({})
        .check();
    Scenario("", [&](ExposedPlugin& plugin) { plugin.onUsbMountStatus(body, tvfirmware::USB_DEV_STATUS_MOUNT); })
        .given(withoutInstance)
        .happens({})
        .check();
}

} // namespace
