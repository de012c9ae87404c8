#include "desktop/cli/UserFolder.h"

#include <unistd.h>

#include <cerrno>
#include <filesystem>

namespace desktop {

int makeUserFolder(const std::string& folder)
{
    std::error_code failed;
    std::filesystem::create_directories(folder, failed);
    return !failed && access(folder.c_str(), W_OK | X_OK) != 0 ? errno : failed.value();
}

} // namespace desktop
