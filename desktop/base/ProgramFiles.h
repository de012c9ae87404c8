#pragma once

#include <filesystem>
#include <string>

namespace desktop {

/// The folder of the program that runs, as it was when this was first asked for: once the process has another root, the
/// kernel may give a path that leads nowhere there.
inline const std::filesystem::path& programFolder()
{
    static const std::filesystem::path s_folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    return s_folder;
}

/// A file that belongs to the program that runs: at @p built in the build tree, at @p installed where both are installed.
/// Both are relative to the program's folder. What is returned need not exist.
inline std::string programFile(const char* built, const char* installed)
{
    const std::filesystem::path inBuildTree = programFolder() / built;
    return (std::filesystem::exists(inBuildTree) ? inBuildTree : programFolder() / installed).lexically_normal().string();
}

} // namespace desktop
