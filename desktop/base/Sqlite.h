#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

namespace desktop {

/// What a database could not do.
class SqliteError : public std::runtime_error {
public:
    SqliteError(int code, const std::string& reason)
        : std::runtime_error(reason)
        , m_code(code)
    {
    }
    /// Whether the database's file is at fault.
    bool damaged() const { return m_code == SQLITE_CORRUPT || m_code == SQLITE_NOTADB; }

private:
    int m_code;
};

/// An open database. Failures throw SqliteError. One thread at a time.
class SqliteDatabase {
public:
    /// Opens @p file, made when missing; ":memory:" lives with the object.
    explicit SqliteDatabase(const std::string& file);

    /// Runs the statements @p sql.
    void execute(const char* sql);
    sqlite3* handle() const { return m_handle.get(); }

private:
    struct Close {
        void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
    };
    std::unique_ptr<sqlite3, Close> m_handle;
};

/// Changes to a database that are made together. Undone unless they are committed.
class SqliteTransaction {
public:
    explicit SqliteTransaction(SqliteDatabase& database);
    ~SqliteTransaction();
    SqliteTransaction(const SqliteTransaction&) = delete;
    SqliteTransaction& operator=(const SqliteTransaction&) = delete;

    void commit();

private:
    SqliteDatabase& m_database;
    bool m_committed = false;
};

/// A prepared statement. Failures throw SqliteError; the object can be run again after them.
class SqliteStatement {
public:
    SqliteStatement(const SqliteDatabase& database, const char* sql);

    /// One run of the statement, from binding its values to its end.
    class Run {
    public:
        explicit Run(SqliteStatement& statement)
            : m_statement(statement.m_statement.get())
        {
        }
        ~Run()
        {
            sqlite3_reset(m_statement);
            sqlite3_clear_bindings(m_statement);
        }
        Run(const Run&) = delete;
        Run& operator=(const Run&) = delete;

        /// Binds the next value; bytes must stay until the run ends.
        Run& bind(std::int64_t value);
        Run& bindText(const std::string& text);
        Run& bindBytes(const std::string& bytes);
        /// Goes to the next row; false after the last one.
        bool step();
        std::int64_t integer(int column) const { return sqlite3_column_int64(m_statement, column); }
        std::string bytes(int column) const;

    private:
        void check(int code) const;

        sqlite3_stmt* m_statement;
        int m_bound = 0;
    };

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};

} // namespace desktop
