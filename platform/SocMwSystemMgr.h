#pragma once

#include <memory>

/// The system manager: what the plugin needs of the television itself. Called on the event thread; 0 means success.
class SocMwSystemMgr {
public:
    SocMwSystemMgr();
    ~SocMwSystemMgr();
    SocMwSystemMgr(const SocMwSystemMgr&) = delete;
    SocMwSystemMgr& operator=(const SocMwSystemMgr&) = delete;

    /// Writes whether the screen is switched off (non-zero) while the set runs on.
    int getScreenStatus(int* status);
    /// Switches the screen off (@p off non-zero) or on again (0).
    int ScreenOff(int off);

private:
    struct State;
    std::unique_ptr<State> m_state;
};
