#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"

#include <dirent.h>

namespace tvfirmware {

namespace {

// The kernel keeps this directory while at least one USB mass-storage device is attached.
bool usbStorageIsAttached()
{
    DIR* directory = opendir("/proc/scsi/usb-storage");
    if (directory == nullptr) {
        return false;
    }
    closedir(directory);
    return true;
}

} // namespace

bool CStorageMediaPlugin::isUsbDevicePlugIn(Json::Value* /*request*/, Json::Value* reply)
{
    if (reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    const bool attached = usbStorageIsAttached();
    LOG_DBG("USB DEVICE is %s", attached ? "Plug-IN" : "Not-Plug-In");
    (*reply)["plugin"] = attached;
    return true;
}

bool CStorageMediaPlugin::isUsbDevicePlugin()
{
    const bool attached = usbStorageIsAttached();
    LOG_DBG("USB DEVICE is %s", attached ? "Plug-IN" : "Not-Plug-In");
    return attached;
}

} // namespace tvfirmware
