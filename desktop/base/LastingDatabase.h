#pragma once

#include "desktop/base/Sqlite.h"

#include <memory>
#include <string>
#include <utility>

namespace desktop {

/// The settings that such a database begins with: several programs share it, and what is committed outlasts the program,
/// though not always the computer.
inline constexpr const char* kLastingSettings = "PRAGMA busy_timeout = 5000;"
                                                "PRAGMA journal_mode = WAL;"
                                                "PRAGMA synchronous = NORMAL;";

/// Where a database lies that is to outlast the program, and what becomes of its file.
class DatabaseFile {
public:
    /// @p name in @p folder, made when missing; in memory when @p folder is empty. @p subject is what the log calls it.
    DatabaseFile(const std::string& folder, const std::string& name, std::string subject);

    /// What SqliteDatabase opens.
    const std::string& path() const { return m_path; }
    bool isInMemory() const;
    /// From now on it lives in memory, which is logged with the reason @p why.
    void keepInMemory(const std::string& why);
    /// Renames the file, damaged as @p why says, so that a new one can be begun. Logged.
    void setAside(const std::string& why);
    /// Logs that it cannot be used because of @p why.
    void logUnusable(const std::string& why) const;

private:
    std::string m_path;
    std::string m_subject;
};

/// A database that outlasts the program, used through a @p Connection: its tables and prepared statements, made from the
/// path of its file. A damaged one is set aside and a new one begun; one that cannot be opened lives in memory. One thread
/// at a time.
template <typename Connection>
class LastingDatabase {
public:
    explicit LastingDatabase(DatabaseFile file)
        : m_file(std::move(file))
    {
    }

    /// Runs @p action on an open Connection; once more, on a new one, when the first turns out to be damaged. False, which
    /// is logged, when it could not be done.
    template <typename Action>
    bool use(const Action& action)
    {
        for (int attempt = 0; attempt < 2; ++attempt) {
            try {
                open();
                action(*m_connection);
                return true;
            } catch (const SqliteError& error) {
                if (!error.damaged()) {
                    m_file.logUnusable(error.what());
                    return false;
                }
                m_connection.reset();
                m_file.setAside(error.what());
            }
        }
        return false;
    }

private:
    void open()
    {
        if (m_connection != nullptr) {
            return;
        }
        try {
            m_connection = std::make_unique<Connection>(m_file.path());
        } catch (const SqliteError& error) {
            if (error.damaged() || m_file.isInMemory()) {
                throw;
            }
            m_file.keepInMemory(error.what());
            m_connection = std::make_unique<Connection>(m_file.path());
        }
    }

    DatabaseFile m_file;
    std::unique_ptr<Connection> m_connection;
};

} // namespace desktop
