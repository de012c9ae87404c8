#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/player/OpenMedium.h"

#include <map>
#include <memory>
#include <string>

struct mpv_handle;
struct mpv_stream_cb_info;

namespace desktop {

/// The files that mpv may open, by names of their own: it gets none by its path. Safe on any thread; outlives the handle.
class StreamFiles {
public:
    /// Makes the names known to @p mpv. Throws std::runtime_error.
    void attachTo(mpv_handle& mpv);

    /// A name for @p file, until remove().
    std::string add(std::shared_ptr<OpenMedium> file);
    void remove(const std::string& name);

private:
    static int openStream(void* files, char* name, mpv_stream_cb_info* stream);
    std::shared_ptr<OpenMedium> find(const std::string& name);

    Mutex m_mutex;
    int m_last GUARDED_BY(m_mutex) = 0;
    std::map<std::string, std::shared_ptr<OpenMedium>> m_files GUARDED_BY(m_mutex);
};

} // namespace desktop
