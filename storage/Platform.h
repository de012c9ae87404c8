#pragma once

#include "platform/SocMiddleware.h"

#include <memory>

namespace tvfirmware {

/// A fresh handle to the storage manager. Callers use it for one call and drop it: the platform may replace its managers.
inline std::shared_ptr<SocMwStorageUsbMgr> storageManager()
{
    return SocMiddleware::getInstance()->getStorageUsbMgr();
}

/// A fresh handle to the system manager, used and dropped alike.
inline std::shared_ptr<SocMwSystemMgr> systemManager()
{
    return SocMiddleware::getInstance()->getSystemMgr();
}

} // namespace tvfirmware
