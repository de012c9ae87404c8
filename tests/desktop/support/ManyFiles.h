#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

namespace testsupport {

/// Makes @p count empty files in @p folder: PREFIX0.jpg, PREFIX1.jpg and so on.
inline void makeManyFiles(const std::string& folder, int count, const std::string& prefix = "")
{
    for (int i = 0; i < count; ++i) {
        const std::string file = folder + "/" + prefix + std::to_string(i) + ".jpg";
        const int fd = open(file.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
        if (fd < 0) {
            throw std::runtime_error("cannot make " + file);
        }
        close(fd);
    }
}

} // namespace testsupport
