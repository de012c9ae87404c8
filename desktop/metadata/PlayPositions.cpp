#include "desktop/metadata/PlayPositions.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iterator>
#include <utility>

namespace desktop {

namespace {

// Not named like the media index: another layout of that one must not lose the positions.
constexpr const char* kFileName = "play-positions.sqlite";
constexpr const char* kTable = "CREATE TABLE IF NOT EXISTS positions (volume TEXT NOT NULL, path BLOB NOT NULL,"
                               " milliseconds INTEGER NOT NULL, number INTEGER NOT NULL, PRIMARY KEY (volume, path))"
                               " WITHOUT ROWID;";

constexpr std::size_t kMostPositions = 10'000;
constexpr double kMargin = 5;            // seconds at either end that are not worth returning to
constexpr double kMarginShare = 0.05;    // of the duration, likewise
constexpr double kLongest = 1e9;         // seconds: no film is longer
constexpr double kMilliseconds = 1000.0; // of a second

// False for what is no number.
bool isWorthReturning(double seconds, double duration)
{
    const double known = duration > 0 && duration < kLongest ? duration : 0;
    const double margin = std::max(kMargin, known * kMarginShare);
    const double end = known > 0 ? known - margin : kLongest;
    return seconds >= margin && seconds <= end;
}

// Numbers of several programs that share the database stand in the order of their times.
std::int64_t numberAfter(std::int64_t last)
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::max<std::int64_t>(last + 1, std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

SqliteDatabase openDatabase(const std::string& file)
{
    SqliteDatabase database(file);
    database.execute(kLastingSettings);
    database.execute(kTable);
    return database;
}

} // namespace

struct PlayPositions::Connection {
    SqliteDatabase database;
    SqliteStatement select{database, "SELECT volume, path, milliseconds, number FROM positions ORDER BY number"};
    SqliteStatement insert{database, "INSERT OR REPLACE INTO positions VALUES (?1, ?2, ?3, ?4)"};
    SqliteStatement drop{database, "DELETE FROM positions WHERE volume = ?1 AND path = ?2"};
    bool isNew = true; ///< it may lack what was written before: the database before it was damaged

    explicit Connection(const std::string& file)
        : database(openDatabase(file))
    {
    }

    void store(const Changes& changes)
    {
        SqliteTransaction transaction(database);
        if (changes.forgetAll) {
            database.execute("DELETE FROM positions");
        }
        for (const auto& [file, noted] : changes.files) {
            SqliteStatement::Run run(noted ? insert : drop);
            run.bindText(file.volume).bindBytes(file.path);
            if (noted) {
                run.bind(noted->milliseconds).bind(noted->number);
            }
            run.step();
        }
        transaction.commit();
        isNew = false;
    }
};

PlayPositions::PlayPositions(const std::string& cacheFolder)
    : m_database(DatabaseFile(cacheFolder, kFileName, "the list of play positions"))
{
    m_database.use([this](Connection& connection) { load(connection); });
    m_thread = std::thread(&PlayPositions::writeLoop, this);
}

PlayPositions::~PlayPositions()
{
    {
        const LockGuard lock(m_mutex);
        m_ending = true;
        m_changed.notify_all();
    }
    m_thread.join();
}

std::optional<double> PlayPositions::find(const Location& file) const
{
    const LockGuard lock(m_mutex);
    const auto found = m_byFile.find(storedAs(file));
    if (found == m_byFile.end()) {
        return std::nullopt;
    }
    return static_cast<double>(found->second->noted.milliseconds) / kMilliseconds;
}

void PlayPositions::note(const Location& file, double seconds, double duration)
{
    const StoredPlace place = storedAs(file);
    const LockGuard lock(m_mutex);
    if (!isWorthReturning(seconds, duration)) {
        forgetLocked(place);
        return;
    }
    const Noted noted = {std::llround(seconds * kMilliseconds), numberAfter(m_lastNumber)};
    add(place, noted);
    changeLocked(place, noted);
}

void PlayPositions::forget(const Location& file)
{
    const LockGuard lock(m_mutex);
    forgetLocked(storedAs(file));
}

void PlayPositions::forgetAll()
{
    const LockGuard lock(m_mutex);
    m_positions.clear();
    m_byFile.clear();
    m_changes = {.forgetAll = true};
    m_isDue = true;
    m_changed.notify_all();
}

void PlayPositions::load(Connection& connection)
{
    const LockGuard lock(m_mutex);
    m_positions.clear(); // an attempt before may have come upon the damage only here
    m_byFile.clear();
    SqliteStatement::Run run(connection.select);
    while (run.step()) {
        add({run.bytes(0), run.bytes(1)}, {run.integer(2), run.integer(3)});
    }
    connection.isNew = false;
}

void PlayPositions::add(const StoredPlace& file, const Noted& noted)
{
    remove(file);
    m_byFile[file] = m_positions.insert(m_positions.end(), {file, noted});
    m_lastNumber = noted.number;
    if (m_positions.size() > kMostPositions) {
        forgetLocked(StoredPlace(m_positions.front().file));
    }
}

void PlayPositions::remove(const StoredPlace& file)
{
    const auto found = m_byFile.find(file);
    if (found != m_byFile.end()) {
        m_positions.erase(found->second);
        m_byFile.erase(found);
    }
}

void PlayPositions::forgetLocked(const StoredPlace& file)
{
    remove(file);
    changeLocked(file, std::nullopt);
}

void PlayPositions::changeLocked(const StoredPlace& file, const std::optional<Noted>& noted)
{
    m_changes.files.insert_or_assign(file, noted);
    m_isDue = true;
    m_changed.notify_all();
}

void PlayPositions::Changes::addEarlier(Changes earlier)
{
    if (!forgetAll) {
        forgetAll = earlier.forgetAll;
        files.merge(earlier.files);
    }
}

PlayPositions::Changes PlayPositions::withEverything(const Changes& changes) const
{
    Changes all;
    {
        const LockGuard lock(m_mutex);
        for (const Position& position : m_positions) {
            all.files.emplace(position.file, position.noted);
        }
    }
    all.addEarlier(changes);
    return all;
}

void PlayPositions::writeLoop()
{
    UniqueLock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock.native(), [this]() REQUIRES(m_mutex) { return m_ending || m_isDue; });
        const bool isLast = m_ending;
        if (!m_changes.empty()) {
            Changes changes = std::exchange(m_changes, {});
            m_isDue = false;
            lock.unlock();
            const bool written = write(changes);
            lock.lock();
            if (!written) {
                m_changes.addEarlier(std::move(changes));
            }
        }
        if (isLast) {
            return;
        }
    }
}

// A database that may be new, as the one before was damaged, gets all that is known. What another program has written to it
// stays there.
bool PlayPositions::write(const Changes& changes)
{
    return m_database.use(
        [&](Connection& connection) { connection.store(connection.isNew ? withEverything(changes) : changes); });
}

} // namespace desktop
