#pragma once

#include <mpv/client.h>

#include <initializer_list>
#include <memory>
#include <string>

namespace desktop {

struct DestroyMpv {
    void operator()(mpv_handle* mpv) const { mpv_terminate_destroy(mpv); }
};
using MpvPointer = std::unique_ptr<mpv_handle, DestroyMpv>;

/// mpv as this program uses it: by names and texts. What mpv refuses is left as it was.
class Mpv {
public:
    /// Throws std::runtime_error.
    Mpv();

    mpv_handle& handle() const { return *m_mpv; }

    /// For what is set before initialize(); throws std::runtime_error when there is no such option.
    void setOption(const char* name, const char* value) const;
    void initialize() const;

    void set(const char* name, const std::string& value) const;
    void set(const char* name, double value) const;
    void setFlag(const char* name, bool value) const;
    /// The property's value; @p otherwise when there is none now.
    double number(const char* name, double otherwise = 0) const;
    bool flag(const char* name) const;
    std::string text(const char* name) const;

    /// mpv's result: below 0 when it failed.
    int command(std::initializer_list<const char*> words) const;
    /// Does not wait for mpv to get to it.
    int commandLater(std::initializer_list<const char*> words) const;

private:
    MpvPointer m_mpv;
};

} // namespace desktop
