#include "desktop/base/ErrorText.h"

#include <filesystem>
#include <new>

namespace desktop {

std::string errorText(const std::exception& error)
{
    if (const auto* const file = dynamic_cast<const std::filesystem::filesystem_error*>(&error)) {
        const std::string path = file->path1().string();
        return (path.empty() ? "" : path + ": ") + file->code().message();
    }
    return dynamic_cast<const std::bad_alloc*>(&error) != nullptr ? "out of memory" : error.what();
}

} // namespace desktop
