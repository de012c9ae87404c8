#pragma once

#include <json/json.h>

#include <string>

namespace tvfirmware {

/// An asynchronous request that waits for its result. An empty reqId means that nothing is pending.
struct AsyncReqNotify {
    std::string channel; ///< first argument of the publish callback
    std::string reqId;   ///< published under "reqId"
    std::string event;   ///< notification name, where the request chooses it
    std::string extra;   ///< directory change: the directory that is being changed to

    void clear();
};

/// The file scan that waits for NotifyScanFinished.
struct ScanChannel {
    std::string channel;
    std::string reqId;
    std::string event;
    std::string filterType; ///< published under "filterType"
    std::string extra;
};

/// The thumbnail request that waits for NotifyThumbnailInfo.
struct ThumbnailChannel {
    std::string channel;
    std::string reqId;
    std::string event;
    std::string extra;
};

/// Takes over whom to answer from @p request: "channelId", which must not be empty, and "reqId". Null when both were read,
/// else the name of the first that was not; the ones before it are stored all the same.
const char* readRequester(Json::Value& request, AsyncReqNotify& slot);

} // namespace tvfirmware
