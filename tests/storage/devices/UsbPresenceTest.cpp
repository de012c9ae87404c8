#include "support/Scenario.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

const Happening kOpens = did(R"(opendir("/proc/scsi/usb-storage"))");

Scenario check()
{
    return {"isUsbDevicePlugIn", &CStorageMediaPlugin::isUsbDevicePlugIn};
}

void attached(FakePlatform& platform, ExposedPlugin& /*plugin*/)
{
    platform.usbDirectoryOpens = true;
}

TEST(UsbPresence, NoDevice_RepliesFalseAndSucceeds)
{
    check()
        .happens({kOpens, dbg("USB DEVICE is Not-Plug-In")})
        .succeeds()
        .reply("{}")
        .leavesReply(R"({"plugin":false})")
        .check();
}

TEST(UsbPresence, Device_RepliesTrueAndClosesTheDirectory)
{
    check()
        .given(attached)
        .happens({kOpens, did("closedir()"), dbg("USB DEVICE is Plug-IN")})
        .succeeds()
        .leavesReply(R"({"kept":"as it was","plugin":true})")
        .check();
}

TEST(UsbPresence, NullRequest_IsNotRead)
{
    check()
        .nullRequest()
        .happens({kOpens, dbg("USB DEVICE is Not-Plug-In")})
        .succeeds()
        .reply("{}")
        .leavesReply(R"({"plugin":false})")
        .check();
}

TEST(UsbPresence, NullReply_FailsWithoutProbing)
{
    check().given(attached).nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

TEST(UsbPresence, AskedByOtherCode_ReturnsThePresence)
{
    bool present = true;
    Scenario("isUsbDevicePlugin", [&](ExposedPlugin& plugin) { present = plugin.isUsbDevicePlugin(); })
        .happens({kOpens, dbg("USB DEVICE is Not-Plug-In")})
        .afterwards([&] { EXPECT_FALSE(present); })
        .check();
    Scenario("isUsbDevicePlugin", [&](ExposedPlugin& plugin) { present = plugin.isUsbDevicePlugin(); })
        .given(attached)
        .happens({kOpens, did("closedir()"), dbg("USB DEVICE is Plug-IN")})
        .afterwards([&] { EXPECT_TRUE(present); })
        .check();
}

} // namespace
