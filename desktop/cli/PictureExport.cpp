#include "desktop/cli/PictureExport.h"

#include "desktop/cli/UnfinishedFile.h"
#include "desktop/cli/UserFolder.h"

#include "desktop/files/PathResolver.h"
#include "desktop/text/Utf8.h"
#include "desktop/thumbnails/PictureFiles.h"

#include <fcntl.h>

#include <cerrno>
#include <filesystem>

namespace desktop {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestName = 255; // bytes
constexpr const char* kExtension = ".jpg";

/// @p name cut to at most @p bytes, between two characters when it is UTF-8.
std::string cutName(std::string name, std::size_t bytes)
{
    if (isUtf8(name)) {
        cutUtf8(name, bytes);
    }
    return name.substr(0, bytes);
}

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
    return copy.fd() >= 0 && copyFile(from.get(), copy.fd()) && copy.keepAs(target) ? 0 : errno;
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
