#include "desktop/cli/UnfinishedFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>

namespace desktop {

namespace {

constexpr mode_t kMode = 0644;

} // namespace

UnfinishedFile::UnfinishedFile(const std::string& folder)
    : m_path(folder + "/.desktop-tv-XXXXXX")
    , m_fd(mkostemp(m_path.data(), O_CLOEXEC))
    , m_made(static_cast<bool>(m_fd))
{
}

UnfinishedFile::~UnfinishedFile()
{
    if (m_made) {
        unlink(m_path.c_str());
    }
}

// Some file systems tell only when a file is closed that there is no room for it.
bool UnfinishedFile::keepAs(const std::string& path)
{
    const bool kept =
        fchmod(m_fd.get(), kMode) == 0 && close(m_fd.release()) == 0 && rename(m_path.c_str(), path.c_str()) == 0;
    m_made = !kept;
    return kept;
}

} // namespace desktop
