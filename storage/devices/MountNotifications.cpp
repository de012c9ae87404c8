#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/devices/DlnaPath.h"

namespace tvfirmware {

namespace {

// A status the table does not know is published under the empty name.
const char* notificationName(UsbDevStatus status)
{
    switch (status) {
    case USB_DEV_STATUS_PLUGIN:
        return "storagemedia.usb.plugin";
    case USB_DEV_STATUS_MOUNT:
        return "storagemedia.usb.mount";
    case USB_DEV_STATUS_UNMOUNT:
        return "storagemedia.usb.unmount";
    case USB_DEV_STATUS_DLNA_MOUNT:
        return "storagemedia.dlna.mount";
    case USB_DEV_STATUS_DLNA_UNMOUNT:
        return "storagemedia.dlna.unmount";
    }
    return "";
}

UsbDevStatus mountStatus(bool dlna, bool mounted)
{
    if (dlna) {
        return mounted ? USB_DEV_STATUS_DLNA_MOUNT : USB_DEV_STATUS_DLNA_UNMOUNT;
    }
    return mounted ? USB_DEV_STATUS_MOUNT : USB_DEV_STATUS_UNMOUNT;
}

// A set that plays on with its screen off shows the change: the screen comes back before the host is told.
void wakeScreen()
{
    int status = 0;
    systemManager()->getScreenStatus(&status);
    if (status != 0) {
        systemManager()->ScreenOff(0);
    }
}

} // namespace

void CStorageMediaPlugin::onUsbMountStatus(std::string& path, std::string& name, bool mounted, int devType)
{
    if (m_pThisControl == nullptr) {
        return;
    }
    LOG_DBG("USB-DEVICE:(%s) %s", name.c_str(), mounted ? "mount" : "unmount");
    m_pThisControl->NotifyUsbMountStatus(path, name, mounted, devType);
}

void CStorageMediaPlugin::onUsbMountStatus(Json::Value& body, UsbDevStatus status)
{
    if (m_pThisControl != nullptr) {
        m_pThisControl->NotifyUsbMountStatus(body, status);
    }
}

void CStorageMediaPlugin::NotifyUsbMountStatus(std::string& path, std::string& name, bool mounted, int devType)
{
    if (m_pPublishCallback == nullptr) {
        return;
    }
    Json::Value body;
    body["path"] = path;
    body["name"] = name;
    m_pPublishCallback("storagemedia", notificationName(mountStatus(isDlna(path, devType), mounted)), body);
}

void CStorageMediaPlugin::NotifyUsbMountStatus(Json::Value& body, UsbDevStatus status)
{
    if (m_pPublishCallback == nullptr) {
        return;
    }
    wakeScreen();
    // A copy: the host may move from what it is given.
    Json::Value copy = body;
    m_pPublishCallback("storagemedia", notificationName(status), copy);
}

} // namespace tvfirmware
