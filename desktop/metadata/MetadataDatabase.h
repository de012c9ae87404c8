#pragma once

#include "desktop/base/LastingDatabase.h"
#include "desktop/base/ThreadAnnotations.h"
#include "desktop/metadata/StoredPlace.h"
#include "desktop/workers/MediaMetadata.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace desktop {

/// The state a file was in when it was read; a file whose stamp is another has been changed.
struct FileStamp {
    std::uint64_t size = 0;    ///< bytes
    std::int64_t modified = 0; ///< nanoseconds

    bool operator==(const FileStamp& other) const = default;
};

struct StoredFile {
    std::string name; ///< bytes
    FileStamp stamp;
    MediaMetadata metadata;
};

struct StoredFolderFiles {
    StoredPlace folder;
    std::vector<StoredFile> files;
};

/// What is known of the files of one folder.
class KnownFiles {
public:
    void add(StoredFile file);
    /// The metadata of file @p name; null when it is not known, or of another state of the file. Valid with this object.
    const MediaMetadata* find(const std::string& name, const FileStamp& stamp) const;
    bool empty() const { return m_files.empty(); }

private:
    std::unordered_map<std::string, StoredFile> m_files;
};

/// Remembers the metadata of media files, in a database that outlasts the program. What it cannot do it logs: a damaged
/// database is set aside and a new one begun; without a usable folder the metadata lives in memory. Safe on any thread.
class MetadataDatabase {
public:
    /// Keeps the database in folder @p cacheFolder, made when missing; in memory when that is empty.
    explicit MetadataDatabase(const std::string& cacheFolder);
    ~MetadataDatabase();

    KnownFiles filesOf(const StoredPlace& folder);
    /// Remembers files of many folders in one transaction, in place of what was known of them.
    void store(const std::vector<StoredFolderFiles>& folders);
    void store(const StoredPlace& folder, const std::vector<StoredFile>& files) { store({{folder, files}}); }
    /// Forgets the files of @p folder and of all folders below it.
    void forgetBelow(const StoredPlace& folder);

private:
    struct Connection;

    template <typename Action>
    void use(const Action& action);

    Mutex m_mutex;
    LastingDatabase<Connection> m_database GUARDED_BY(m_mutex);
};

} // namespace desktop
