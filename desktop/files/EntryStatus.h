#pragma once

#include "desktop/files/PathResolver.h"

#include "platform/SocMwTypes.h"

#include <sys/stat.h>

#include <cstdint>
#include <ctime>
#include <optional>
#include <vector>

namespace desktop {

/// What the file system says of one entry of a folder.
struct EntryStatus {
    FileType type = FILE_TYPE_UNKNOWN; ///< unknown: what cannot or must not be read
    std::uint64_t size = 0;            ///< bytes; 0 for all but regular files
    std::int64_t modified = 0;         ///< when the content last changed, in nanoseconds; of regular files
    std::time_t created = 0;           ///< birth, or the last change of status where the file system keeps no birth
};

/// Looks at the entries of one folder. Only regular files are ever opened. Links are followed as long as they stay on the
/// volume and do not lead back into a folder on their own path.
class EntryInspector {
public:
    /// @p folder: an open descriptor of the folder at @p location.
    EntryInspector(int folder, Location location);

    /// The status of entry @p name; nothing when it has gone.
    std::optional<EntryStatus> inspect(const std::string& name) const;

private:
    EntryStatus followLink(const std::string& name, std::time_t created) const;
    bool leadsBack(const struct stat& target) const;

    int m_folder;
    Location m_location;
    std::vector<struct stat> m_path; ///< the volume's folder and every folder on the way to this one
};

/// The status of entry @p name of the open folder @p folder when it is a regular file, of unknown type when it cannot be
/// looked at, for the reason in errno; nothing when it is no regular file or has gone.
std::optional<EntryStatus> inspectFile(int folder, const std::string& name);

/// The status of the folder or regular file that @p pinned, an O_PATH descriptor, stands for; anything else is unknown.
/// @p name: the file's name. Nothing when it cannot be looked at.
std::optional<EntryStatus> inspectPinned(int pinned, const std::string& name);

/// The type of a regular file of @p size bytes: by the extension of @p name, and by its content where that leaves it open.
/// @p pinned is an O_PATH descriptor of it.
FileType regularFileType(const std::string& name, std::uint64_t size, int pinned);

/// What the kernel already knows of @p path, fields STATX_*: a file system that does not answer holds nothing up. Nothing
/// when it is not there.
std::optional<struct statx> statusWithoutWaiting(const std::string& path, unsigned int fields);

/// Opens the regular file that @p pinned, an O_PATH descriptor, stands for; nothing else is opened. Sets errno, and leaves
/// it when @p pinned is -1, the result of an open(2) that failed.
UniqueFd openRegularFile(int pinned);

} // namespace desktop
