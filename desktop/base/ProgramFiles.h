#pragma once

#include <filesystem>
#include <string>

namespace desktop {

/// A file that belongs to the program that runs: at @p built in the build tree, at @p installed where both are installed.
/// Both are relative to the program's folder. What is returned need not exist.
inline std::string programFile(const char* built, const char* installed)
{
    const std::filesystem::path folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const std::filesystem::path inBuildTree = folder / built;
    return (std::filesystem::exists(inBuildTree) ? inBuildTree : folder / installed).lexically_normal().string();
}

} // namespace desktop
