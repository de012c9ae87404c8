#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace testsupport {

/// A directory of its own that goes with the object; the working directory of the process comes back too.
class TemporaryDirectory {
public:
    TemporaryDirectory()
        : m_before(std::filesystem::current_path())
    {
        std::string name = (std::filesystem::temp_directory_path() / "storagemedia-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no temporary directory");
        }
        m_path = name;
    }

    ~TemporaryDirectory()
    {
        std::filesystem::current_path(m_before);
        std::filesystem::remove_all(m_path);
    }

    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    std::string path(const std::string& below = "") const { return below.empty() ? m_path : m_path + "/" + below; }

    void makeDirectory(const std::string& below) const { std::filesystem::create_directories(path(below)); }

    void makeFile(const std::string& below) const { std::ofstream(path(below)) << "content"; }

    bool has(const std::string& below) const
    {
        return std::filesystem::exists(std::filesystem::symlink_status(path(below)));
    }

private:
    std::filesystem::path m_before;
    std::string m_path;
};

} // namespace testsupport
