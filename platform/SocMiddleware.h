#pragma once

#include "SocMwStorageUsbMgr.h"
#include "SocMwSystemMgr.h"

#include <memory>

/// The way to the managers. Safe on any thread; handles are shared, and callers drop them after each call.
class SocMiddleware {
public:
    SocMiddleware();
    ~SocMiddleware();
    SocMiddleware(const SocMiddleware&) = delete;
    SocMiddleware& operator=(const SocMiddleware&) = delete;

    /// The one middleware of the process; never null.
    static SocMiddleware* getInstance();
    std::shared_ptr<SocMwStorageUsbMgr> getStorageUsbMgr();
    std::shared_ptr<SocMwSystemMgr> getSystemMgr();

private:
    struct State;
    std::unique_ptr<State> m_state;
};
