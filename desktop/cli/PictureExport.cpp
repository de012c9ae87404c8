#include "desktop/cli/PictureExport.h"

#include "desktop/cli/UserFolder.h"

#include "desktop/base/UniqueFd.h"
#include "desktop/files/PathResolver.h"
#include "desktop/text/Utf8.h"
#include "desktop/thumbnails/PictureFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace desktop {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestName = 255; // bytes
constexpr const char* kExtension = ".jpg";
constexpr mode_t kMode = 0644;

/// @p name cut to at most @p bytes, between two characters when it is UTF-8.
std::string cutName(std::string name, std::size_t bytes)
{
    if (isUtf8(name)) {
        cutUtf8(name, bytes);
    }
    return name.substr(0, bytes);
}

/// A file under a name of its own until it is whole; removed unless it is kept.
class UnfinishedFile {
public:
    explicit UnfinishedFile(const std::string& folder)
        : m_path(folder + "/.desktop-tv-XXXXXX")
        , m_fd(mkostemp(m_path.data(), O_CLOEXEC))
        , m_made(static_cast<bool>(m_fd))
    {
    }
    ~UnfinishedFile()
    {
        if (m_made) {
            unlink(m_path.c_str());
        }
    }
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    bool fillFrom(int file) const { return m_made && copyFile(file, m_fd.get()) && fchmod(m_fd.get(), kMode) == 0; }
    // Some file systems tell only when a file is closed that there is no room for it.
    bool keepAs(const std::string& path)
    {
        const bool kept = close(m_fd.release()) == 0 && rename(m_path.c_str(), path.c_str()) == 0;
        m_made = !kept;
        return kept;
    }

private:
    std::string m_path;
    UniqueFd m_fd;
    bool m_made;
};

} // namespace

int PictureExport::prepare() const
{
    return makeUserFolder(m_folder);
}

int PictureExport::copy(const std::string& picture, const std::string& mediaPath, std::string& target)
{
    target = fs::path(m_folder) / nameFor(mediaPath);
    const UniqueFd from(open(picture.c_str(), O_RDONLY | O_CLOEXEC));
    if (!from) {
        return errno;
    }
    UnfinishedFile copy(m_folder);
    return copy.fillFrom(from.get()) && copy.keepAs(target) ? 0 : errno;
}

// Sticks may have files of one name, and names may be too long for an extension.
std::string PictureExport::nameFor(const std::string& mediaPath)
{
    const std::string whole = lastName(mediaPath);
    std::string end = kExtension;
    if (whole.size() + end.size() > kLongestName) {
        end = "~" + std::to_string(m_names.size()) + kExtension;
    }
    std::string name;
    do {
        name = cutName(whole, kLongestName - end.size()) + end;
        end = "~" + std::to_string(m_names.size()) + kExtension;
    } while (!m_names.insert(name).second);
    return name;
}

bool endsAllCopies(int error)
{
    return error == ENOSPC || error == EDQUOT || error == EROFS || error == EACCES || error == ENOENT || error == EIO;
}

} // namespace desktop
