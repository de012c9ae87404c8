#include "plugin/StorageMediaPlugin.h"

#include "plugin/CommandTable.h"

#include "platform/SocMwLog.h"

// The host's framework logger; its format is declared writable but never written to.
#define FRAMEWORK_LOG(level, format, ...) \
    SocMwLogPrintEx("FRAMEWORK", level, const_cast<char*>(format) __VA_OPT__(, ) __VA_ARGS__)

namespace {

constexpr int kPluginId = 10;

tvfirmware::CStorageMediaPlugin* m_spCStorageMediaPlugin = nullptr;

} // namespace

extern "C" {

const char* PLUGIN_HEADER_STORAGEMEDIA = "storagemedia";

const char* Plugin_Load()
{
    FRAMEWORK_LOG(1, "[TVFW::StoragePlugin] Plugin_Load");
    m_spCStorageMediaPlugin = new tvfirmware::CStorageMediaPlugin();
    Plugin_Cmd_Hash_Gen();
    return PLUGIN_HEADER_STORAGEMEDIA;
}

bool Plugin_Execute(const char* name, Json::Value* request, Json::Value* reply)
{
    FRAMEWORK_LOG(0, "storageMedia plugin Plugin_Execute: %s", name != nullptr ? name : "");
    // The modifying access: a request without the hash gains a null member, which reads as 0.
    const auto found = gCmdListIndexMap.find((*request)["CmdHash"].asUInt());
    if (found == gCmdListIndexMap.end()) {
        return false;
    }
    const Handler handler = gCmdStringMap[static_cast<std::size_t>(found->second)].handler;
    return handler != nullptr && (m_spCStorageMediaPlugin->*handler)(request, reply);
}

void Plugin_Unload()
{
    FRAMEWORK_LOG(0, "[TVFW::StoragePlugin] storage plugin Plugin_Unload");
    // The pointer and the index stay as they are: the host calls nothing before it loads again.
    delete m_spCStorageMediaPlugin;
}

int Plugin_GetId()
{
    return kPluginId;
}

int Plugin_RecvNotification(int id, void* /*data*/)
{
    FRAMEWORK_LOG(0, "[TVFW::StoragePlugin] storage plugin Plugin_RecvNotification: %d", id);
    return 1;
}

void Server_PublishNotification_Callback(PublishNotificationCallback cb)
{
    m_spCStorageMediaPlugin->setCallback(cb);
}

void Server_NotificationToPlugin_Callback(void* p)
{
    FRAMEWORK_LOG(0, "[TVFW::StoragePlugin] storage plugin Server_NotificationToPlugin_Callback: %p", p);
}

} // extern "C"
