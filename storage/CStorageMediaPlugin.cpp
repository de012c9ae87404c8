#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"

namespace tvfirmware {

CStorageMediaPlugin* CStorageMediaPlugin::m_pThisControl = nullptr;

CStorageMediaPlugin::CStorageMediaPlugin()
{
    m_pThisControl = this;
    m_scanChannel.event = "storage.fileScan.complete";
    m_thumbnailChannel.event = "storage.media.thumbnail.complete";

    thumbnailBUffDirInit("/mtd_rwarea/apdat/Thumbnaildata/Mass");
    thumbnailBUffDirInit("/mtd_rwarea/apdat/Thumbnaildata/Sing");

    LOG_DBG("[TVFW::CStoragePlugin] CREATE");
    // From here on events may arrive, on the platform's own thread.
    storageManager()->setListener(&CStorageMediaPlugin::onRecvEvent);
}

CStorageMediaPlugin::~CStorageMediaPlugin()
{
    m_intList.clear();
    LOG_DBG("[TVFW::~CStorageMediaPlugin] DELETE");
}

void CStorageMediaPlugin::setCallback(PublishNotificationCallback callback)
{
    LOG_DBG("setCallback: %p", reinterpret_cast<void*>(callback));
    m_pPublishCallback = callback;
}

} // namespace tvfirmware
