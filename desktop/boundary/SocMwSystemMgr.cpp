#include "platform/SocMwSystemMgr.h"

#include "desktop/boundary/DesktopMiddleware.h"

#include <atomic>

struct SocMwSystemMgr::State {
    std::atomic<int> screenOff{0};
};

SocMwSystemMgr::SocMwSystemMgr()
    : m_state(std::make_unique<State>())
{
}

SocMwSystemMgr::~SocMwSystemMgr() = default;

int SocMwSystemMgr::getScreenStatus(int* status)
{
    *status = m_state->screenOff;
    return 0;
}

int SocMwSystemMgr::ScreenOff(int off)
{
    m_state->screenOff = off;
    desktop::DesktopMiddleware::instance().screenSwitched(off != 0);
    return 0;
}
