#include "desktop/base/Sqlite.h"

namespace desktop {

namespace {

[[noreturn]] void fail(sqlite3* database, int code)
{
    // Extended codes have the plain one in their lowest byte.
    throw SqliteError(code & 0xFF, database != nullptr ? sqlite3_errmsg(database) : sqlite3_errstr(code));
}

} // namespace

SqliteDatabase::SqliteDatabase(const std::string& file)
{
    sqlite3* handle = nullptr;
    const int code =
        sqlite3_open_v2(file.c_str(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX, nullptr);
    m_handle.reset(handle);
    if (code != SQLITE_OK) {
        fail(handle, code);
    }
}

void SqliteDatabase::execute(const char* sql)
{
    const int code = sqlite3_exec(m_handle.get(), sql, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) {
        fail(m_handle.get(), code);
    }
}

SqliteTransaction::SqliteTransaction(SqliteDatabase& database)
    : m_database(database)
{
    m_database.execute("BEGIN IMMEDIATE");
}

SqliteTransaction::~SqliteTransaction()
{
    if (!m_committed) {
        sqlite3_exec(m_database.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
}

void SqliteTransaction::commit()
{
    m_database.execute("COMMIT");
    m_committed = true;
}

SqliteStatement::SqliteStatement(const SqliteDatabase& database, const char* sql)
{
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v3(database.handle(), sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    m_statement.reset(statement);
    if (code != SQLITE_OK) {
        fail(database.handle(), code);
    }
}

SqliteStatement::Run& SqliteStatement::Run::bind(std::int64_t value)
{
    check(sqlite3_bind_int64(m_statement, ++m_bound, value));
    return *this;
}

SqliteStatement::Run& SqliteStatement::Run::bindText(const std::string& text)
{
    check(sqlite3_bind_text64(m_statement, ++m_bound, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8));
    return *this;
}

SqliteStatement::Run& SqliteStatement::Run::bindBytes(const std::string& bytes)
{
    check(sqlite3_bind_blob64(m_statement, ++m_bound, bytes.data(), bytes.size(), SQLITE_STATIC));
    return *this;
}

bool SqliteStatement::Run::step()
{
    const int code = sqlite3_step(m_statement);
    if (code != SQLITE_ROW && code != SQLITE_DONE) {
        fail(sqlite3_db_handle(m_statement), code);
    }
    return code == SQLITE_ROW;
}

std::string SqliteStatement::Run::bytes(int column) const
{
    const void* bytes = sqlite3_column_blob(m_statement, column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column));
    return bytes != nullptr ? std::string(static_cast<const char*>(bytes), size) : std::string();
}

void SqliteStatement::Run::check(int code) const
{
    if (code != SQLITE_OK) {
        fail(sqlite3_db_handle(m_statement), code);
    }
}

} // namespace desktop
