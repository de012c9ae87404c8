#include "storage/RequestRecords.h"

#include "storage/Log.h"
#include "storage/RequestKeys.h"

namespace tvfirmware {

void AsyncReqNotify::clear()
{
    channel.clear();
    reqId.clear();
    event.clear();
    extra.clear();
}

bool AsyncReqNotify::read(const char* handler, Json::Value& request)
{
    std::string channelId;
    if (!readString(request, "channelId", channelId) || channelId.empty()) {
        STORAGE_LOG(handler, ERR, "unknown channelId");
        return false;
    }
    channel = channelId;
    std::string id;
    if (!readString(request, "reqId", id)) {
        STORAGE_LOG(handler, ERR, "unknown reqId");
        return false;
    }
    reqId = id;
    return true;
}

} // namespace tvfirmware
