#include <platform/CJsonOperation.h>
#include <platform/SocMiddleware.h>
#include <platform/SocMwEvents.h>
#include <platform/SocMwLog.h>
#include <plugin/StorageMediaPlugin.h>

#include <cstdio>

// One function of the boundary, as a platform defines it; the records below cross it.
int tvfirmware::CJsonOperation::safeReadInt(Json::Value& object, std::string key, int& value)
{
    if (!object[key].isInt()) {
        return -1;
    }
    value = object[key].asInt();
    return 0;
}

int main()
{
    Json::Value request;
    request["number"] = 9;
    int number = 0;
    const int ret = tvfirmware::CJsonOperation::safeReadInt(request, "number", number);

    const PublishNotificationCallback publish = [](const char* source, const char* event, Json::Value&) {
        std::printf("%s %s\n", source, event);
    };
    Json::Value body;
    publish("storagemedia", "storagemedia.usb.mount", body);

    const FolderFileInfo_s entry;
    const subtitle_info_s subtitle;
    return ret == 0 && number == 9 && entry.isPhoto360 == 0 && subtitle.image.picture == nullptr ? 0 : 1;
}
