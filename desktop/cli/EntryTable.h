#pragma once

#include <json/json.h>

#include <cstdint>
#include <string>

namespace desktop {

/// Sums over the entries that have been shown.
struct EntryTotals {
    std::uint64_t folders = 0;
    std::uint64_t files = 0;
    std::uint64_t bytes = 0;

    void add(const Json::Value& entry);
    /// "3 folders, 12 files, 1.5 MB".
    std::string text() const;
};

/// The line over a list of entries.
std::string entryHeading(bool coloured);

/// One entry of a page as a line: type, size, time and name. @p nameKey is the member that is shown as the name: "name" or
/// "path".
std::string entryLine(const Json::Value& entry, bool coloured, const char* nameKey = "name");

/// @p text as the heading of a folder.
std::string folderHeading(const std::string& text, bool coloured);

/// "1 file", "2 files".
std::string counted(std::uint64_t count, const std::string& one);

/// The name of @p type, a FileType.
std::string typeName(int type);

/// Whether @p entry is a folder.
bool isFolder(const Json::Value& entry);

} // namespace desktop
