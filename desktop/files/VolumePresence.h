#pragma once

#include <sys/stat.h>

#include <string>

namespace desktop {

/// Says whether a volume is still the one it was: descriptors outlive a volume that has been removed.
class VolumePresence {
public:
    explicit VolumePresence(std::string volume)
        : m_volume(std::move(volume))
        , m_there(look(m_status))
    {
    }

    bool gone() const
    {
        struct stat now = {};
        return !m_there || !look(now) || now.st_dev != m_status.st_dev || now.st_ino != m_status.st_ino;
    }

private:
    bool look(struct stat& status) const { return stat(m_volume.c_str(), &status) == 0; }

    std::string m_volume;
    struct stat m_status = {};
    bool m_there;
};

} // namespace desktop
