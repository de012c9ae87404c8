#include "storage/events/EventHandlers.h"

#include "storage/RequestKeys.h"
#include "storage/devices/DlnaPath.h"

namespace tvfirmware {

namespace {

int deviceType(Json::Value& device)
{
    int type = 0;
    if (!readInt(device, "devType", type)) {
        LISTENER_DBG("unknown devType set default");
    }
    return type;
}

// The path of the last device that the walk reaches; empty when there is none.
std::string lastPath(const Json::Value& devices, int count)
{
    std::string path;
    int index = 0;
    for (auto device = devices.begin(); device != devices.end() && index < count; ++device) {
        path = (*device)["path"].asString();
        const std::string name = (*device)["name"].asString();
        // The count bounds the walk only while this line is printed: suppressed, its arguments are not evaluated and the
        // walk goes over every device. Hosts rely on both.
        LISTENER_DBG("devid:%d -- %s/%s", index++, path.c_str(), name.c_str());
    }
    return path;
}

} // namespace

void CStorageMediaPlugin::EventHandlers::devicePlugged() const
{
    LISTENER_DBG("Device Plugin!!!"); // published when the device is mounted
}

void CStorageMediaPlugin::EventHandlers::deviceMounted() const
{
    LISTENER_DBG("<===============SOCMW_MM_EVENT_USB_DEVICE_MOUNT==============>");
    Json::Value body;
    onUsbMountStatus(body, USB_DEV_STATUS_PLUGIN);
}

void CStorageMediaPlugin::EventHandlers::deviceRemoved(const Json::Value* removed) const
{
    if (removed == nullptr) {
        return;
    }
    Json::Value device = *removed; // reading must not change the middleware's object
    const int type = deviceType(device);
    std::string path = device["path"].asString();
    LISTENER_DBG("Device :%s removed!", path.c_str());
    onUsbMountStatus(path, path, false, type);
}

void CStorageMediaPlugin::EventHandlers::deviceListChanged(const Json::Value* devices) const
{
    if (devices == nullptr) {
        return;
    }
    Json::Value body = *devices;
    const int type = deviceType(body);
    int count = 0;
    if (!readInt(body, "devcount", count)) {
        LISTENER_DBG("unknown devcount");
        return;
    }
    LISTENER_DBG("Total %d device(s)", count);
    if (isDlna(lastPath((*devices)["devlist"], count), type)) {
        LISTENER_DBG("dlna mount event");
        onUsbMountStatus(body, USB_DEV_STATUS_DLNA_MOUNT);
    } else {
        onUsbMountStatus(body, USB_DEV_STATUS_MOUNT);
    }
}

} // namespace tvfirmware
