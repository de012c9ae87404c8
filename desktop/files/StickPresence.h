#pragma once

#include <sys/stat.h>

#include <string>

namespace desktop {

/// Tells whether a stick is still the one it was: descriptors outlive a stick that has been pulled.
class StickPresence {
public:
    explicit StickPresence(std::string stick)
        : m_stick(std::move(stick))
        , m_there(look(m_status))
    {
    }

    bool gone() const
    {
        struct stat now = {};
        return !m_there || !look(now) || now.st_dev != m_status.st_dev || now.st_ino != m_status.st_ino;
    }

private:
    bool look(struct stat& status) const { return stat(m_stick.c_str(), &status) == 0; }

    std::string m_stick;
    struct stat m_status = {};
    bool m_there;
};

} // namespace desktop
