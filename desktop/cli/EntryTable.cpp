#include "desktop/cli/EntryTable.h"

#include "desktop/cli/TextColumns.h"
#include "desktop/text/HumanSize.h"

#include "platform/SocMwTypes.h"

namespace desktop {

namespace {

// Widths of the columns; the name comes last and may be of any length.
constexpr std::size_t kTypeColumns = 8;
constexpr std::size_t kSizeColumns = 9;
constexpr std::size_t kTimeColumns = 19;

constexpr const char* kBold = "\x1b[1m";
constexpr const char* kDim = "\x1b[2m";

/// Name and colour of a type.
struct TypeStyle {
    const char* name;
    const char* colour;
};

TypeStyle styleOf(int type)
{
    switch (type) {
    case FILE_TYPE_FOLDER:
        return {"folder", "\x1b[1;34m"};
    case FILE_TYPE_OTHER:
        return {"file", ""};
    case FILE_TYPE_PHOTO:
    case FILE_TYPE_PANORAMA:
        return {"photo", "\x1b[36m"};
    case FILE_TYPE_VIDEO:
        return {"video", "\x1b[35m"};
    case FILE_TYPE_MUSIC:
        return {"music", "\x1b[32m"};
    case FILE_TYPE_PLAYLIST:
        return {"playlist", "\x1b[33m"};
    default:
        return {"closed", "\x1b[31m"}; // links that lead nowhere, devices, what may not be read
    }
}

std::string painted(const std::string& text, const char* colour, bool coloured)
{
    return coloured && *colour != '\0' ? colour + text + "\x1b[0m" : text;
}

std::string row(const std::string& type, const std::string& size, const std::string& time, const std::string& name)
{
    return padRight(type, kTypeColumns) + "  " + padLeft(size, kSizeColumns) + "  " + padRight(time, kTimeColumns) + "  " +
           name;
}

} // namespace

void EntryTotals::add(const Json::Value& entry)
{
    (isFolder(entry) ? folders : files) += 1;
    bytes += entry["size"].asUInt64();
}

std::string EntryTotals::text() const
{
    return counted(folders, "folder") + ", " + counted(files, "file") + ", " + humanSize(bytes);
}

std::string entryHeading(bool coloured)
{
    return painted(row("TYPE", "SIZE", "TIME", "NAME"), kDim, coloured) + "\n";
}

std::string entryLine(const Json::Value& entry, bool coloured, const char* nameKey)
{
    const TypeStyle style = styleOf(entry["type"].asInt());
    const bool hasSize = !isFolder(entry) && entry["type"].asInt() != FILE_TYPE_UNKNOWN;
    const std::string size = hasSize ? humanSize(entry["size"].asUInt64()) : "-";
    const std::string name = visibleText(entry[nameKey].asString());
    return row(style.name, size, entry["ctime"].asString(), painted(name, style.colour, coloured)) + "\n";
}

std::string folderHeading(const std::string& text, bool coloured)
{
    return painted(visibleText(text), kBold, coloured) + "\n";
}

std::string counted(std::uint64_t count, const std::string& one)
{
    return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

std::string typeName(int type)
{
    return styleOf(type).name;
}

bool isFolder(const Json::Value& entry)
{
    return entry["type"].asInt() == FILE_TYPE_FOLDER;
}

} // namespace desktop
