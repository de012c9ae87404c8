#include "platform/SocMiddleware.h"

struct SocMiddleware::State {
    std::shared_ptr<SocMwStorageUsbMgr> storage = std::make_shared<SocMwStorageUsbMgr>();
    std::shared_ptr<SocMwSystemMgr> system = std::make_shared<SocMwSystemMgr>();
};

SocMiddleware::SocMiddleware()
    : m_state(std::make_unique<State>())
{
}

SocMiddleware::~SocMiddleware() = default;

SocMiddleware* SocMiddleware::getInstance()
{
    static SocMiddleware instance;
    return &instance;
}

std::shared_ptr<SocMwStorageUsbMgr> SocMiddleware::getStorageUsbMgr()
{
    return m_state->storage;
}

std::shared_ptr<SocMwSystemMgr> SocMiddleware::getSystemMgr()
{
    return m_state->system;
}
