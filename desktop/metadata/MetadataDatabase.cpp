#include "desktop/metadata/MetadataDatabase.h"

#include "desktop/base/Sqlite.h"

#include <sstream>

namespace desktop {

namespace {

// A new layout of the tables gets a new name: it is only a cache.
constexpr const char* kFileName = "media-index-2.sqlite";

constexpr const char* kTables =
    "CREATE TABLE IF NOT EXISTS folders (id INTEGER PRIMARY KEY, volume TEXT NOT NULL, path BLOB NOT NULL,"
    " UNIQUE (volume, path));"
    "CREATE TABLE IF NOT EXISTS files (folder INTEGER NOT NULL, name BLOB NOT NULL, size INTEGER NOT NULL,"
    " modified INTEGER NOT NULL, title TEXT NOT NULL, album TEXT NOT NULL, year TEXT NOT NULL, taken TEXT NOT NULL,"
    " artists TEXT NOT NULL, genres TEXT NOT NULL, duration INTEGER NOT NULL, width INTEGER NOT NULL, height INTEGER NOT "
    "NULL,"
    " rotation INTEGER NOT NULL, panorama INTEGER NOT NULL, error TEXT NOT NULL, PRIMARY KEY (folder, name)) WITHOUT ROWID;";

// A folder and all below it: "0" is the character after "/".
constexpr const char* kBelow = " FROM folders WHERE volume = ?1 AND (?2 = x'' OR path = ?2 OR"
                               " (path > CAST(?2 || '/' AS BLOB) AND path < CAST(?2 || '0' AS BLOB)))";

// Several values lie in one column, a line each: no value has a line end of its own.
constexpr char kLineEnd = '\n';

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line, kLineEnd);) {
        lines.push_back(line);
    }
    return lines;
}

std::string onLines(const std::vector<std::string>& values)
{
    std::string text;
    for (const std::string& value : values) {
        text += value + kLineEnd;
    }
    return text;
}

StoredFile fileOf(const SqliteStatement::Run& row)
{
    StoredFile file;
    int column = 0;
    file.name = row.bytes(column++);
    file.stamp.size = static_cast<std::uint64_t>(row.integer(column++));
    file.stamp.modified = row.integer(column++);
    for (std::string* text : {&file.metadata.title, &file.metadata.album, &file.metadata.year, &file.metadata.taken}) {
        *text = row.bytes(column++);
    }
    for (std::vector<std::string>* values : {&file.metadata.artists, &file.metadata.genres}) {
        *values = linesOf(row.bytes(column++));
    }
    for (int* number : {&file.metadata.duration, &file.metadata.width, &file.metadata.height, &file.metadata.rotation}) {
        *number = static_cast<int>(row.integer(column++));
    }
    file.metadata.panorama = row.integer(column++) != 0;
    file.metadata.error = row.bytes(column++);
    return file;
}

// What is bound must live until the step.
void addFile(SqliteStatement& statement, std::int64_t folder, const StoredFile& file)
{
    const MediaMetadata& metadata = file.metadata;
    const std::string artists = onLines(metadata.artists);
    const std::string genres = onLines(metadata.genres);
    SqliteStatement::Run run(statement);
    run.bind(folder);
    run.bindBytes(file.name).bind(static_cast<std::int64_t>(file.stamp.size)).bind(file.stamp.modified);
    for (const std::string* text : {&metadata.title, &metadata.album, &metadata.year, &metadata.taken}) {
        run.bindText(*text);
    }
    run.bindText(artists).bindText(genres);
    for (const int number :
         {metadata.duration, metadata.width, metadata.height, metadata.rotation, metadata.panorama ? 1 : 0}) {
        run.bind(number);
    }
    run.bindText(metadata.error).step();
}

// Empties a database that an older reading has filled.
void bringUpToDate(SqliteDatabase& database)
{
    SqliteTransaction transaction(database);
    SqliteStatement version(database, "PRAGMA user_version");
    SqliteStatement::Run run(version);
    if (run.step() && run.integer(0) == kReadingVersion) {
        return;
    }
    database.execute("DELETE FROM files; DELETE FROM folders;");
    database.execute(("PRAGMA user_version = " + std::to_string(kReadingVersion)).c_str());
    transaction.commit();
}

SqliteDatabase openDatabase(const std::string& file)
{
    SqliteDatabase database(file);
    database.execute(kLastingSettings);
    database.execute(kTables);
    bringUpToDate(database);
    return database;
}

} // namespace

struct MetadataDatabase::Connection {
    SqliteDatabase database;
    SqliteStatement select{database,
                           "SELECT name, size, modified, title, album, year, taken, artists, genres, duration, width,"
                           " height, rotation, panorama, error FROM files WHERE folder ="
                           " (SELECT id FROM folders WHERE volume = ?1 AND path = ?2)"};
    SqliteStatement addFolder{database, "INSERT OR IGNORE INTO folders (volume, path) VALUES (?1, ?2)"};
    SqliteStatement findFolder{database, "SELECT id FROM folders WHERE volume = ?1 AND path = ?2"};
    SqliteStatement insertFile{database, "INSERT OR REPLACE INTO files VALUES"
                                         " (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?16)"};
    SqliteStatement dropFiles{database,
                              (std::string("DELETE FROM files WHERE folder IN (SELECT id") + kBelow + ")").c_str()};
    SqliteStatement dropFolders{database, (std::string("DELETE") + kBelow).c_str()};

    explicit Connection(const std::string& file)
        : database(openDatabase(file))
    {
    }

    /// Runs @p statement on @p folder; the number in its first row, or 0.
    static std::int64_t run(SqliteStatement& statement, const StoredPlace& folder)
    {
        SqliteStatement::Run run(statement);
        return run.bindText(folder.volume).bindBytes(folder.path).step() ? run.integer(0) : 0;
    }

    void add(const StoredFolderFiles& known)
    {
        run(addFolder, known.folder);
        const std::int64_t id = run(findFolder, known.folder);
        for (const StoredFile& file : known.files) {
            addFile(insertFile, id, file);
        }
    }
};

void KnownFiles::add(StoredFile file)
{
    std::string name = file.name;
    m_files.insert_or_assign(std::move(name), std::move(file));
}

const MediaMetadata* KnownFiles::find(const std::string& name, const FileStamp& stamp) const
{
    const auto found = m_files.find(name);
    return found != m_files.end() && found->second.stamp == stamp ? &found->second.metadata : nullptr;
}

MetadataDatabase::MetadataDatabase(const std::string& cacheFolder)
    : m_database(DatabaseFile(cacheFolder, kFileName, "the media index"))
{
    use([](Connection&) {});
}

MetadataDatabase::~MetadataDatabase() = default;

KnownFiles MetadataDatabase::filesOf(const StoredPlace& folder)
{
    KnownFiles known;
    use([&](Connection& connection) {
        SqliteStatement::Run run(connection.select);
        run.bindText(folder.volume).bindBytes(folder.path);
        while (run.step()) {
            known.add(fileOf(run));
        }
    });
    return known;
}

void MetadataDatabase::store(const std::vector<StoredFolderFiles>& folders)
{
    use([&](Connection& connection) {
        SqliteTransaction transaction(connection.database);
        for (const StoredFolderFiles& folder : folders) {
            connection.add(folder);
        }
        transaction.commit();
    });
}

void MetadataDatabase::forgetBelow(const StoredPlace& folder)
{
    use([&](Connection& connection) {
        SqliteTransaction transaction(connection.database);
        Connection::run(connection.dropFiles, folder);
        Connection::run(connection.dropFolders, folder);
        transaction.commit();
    });
}

template <typename Action>
void MetadataDatabase::use(const Action& action)
{
    const LockGuard lock(m_mutex);
    m_database.use(action);
}

} // namespace desktop
