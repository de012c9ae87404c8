#include "storage/RequestRecords.h"

#include "storage/RequestKeys.h"

namespace tvfirmware {

void AsyncReqNotify::clear()
{
    channel.clear();
    reqId.clear();
    event.clear();
    extra.clear();
}

const char* readRequester(Json::Value& request, AsyncReqNotify& slot)
{
    std::string channel;
    if (!readString(request, "channelId", channel) || channel.empty()) {
        return "channelId";
    }
    slot.channel = channel;
    std::string reqId;
    if (!readString(request, "reqId", reqId)) {
        return "reqId";
    }
    slot.reqId = reqId;
    return nullptr;
}

} // namespace tvfirmware
