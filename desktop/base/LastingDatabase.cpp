#include "desktop/base/LastingDatabase.h"

#include "desktop/base/Log.h"

#include <filesystem>

namespace desktop {

namespace {

namespace fs = std::filesystem;

constexpr const char* kInMemory = ":memory:";

} // namespace

DatabaseFile::DatabaseFile(const std::string& folder, const std::string& name, std::string subject)
    : m_path(folder.empty() ? kInMemory : folder + "/" + name)
    , m_subject(std::move(subject))
{
    if (!folder.empty()) {
        std::error_code failed;
        fs::create_directories(folder, failed); // when that fails, opening the file fails too
    }
}

bool DatabaseFile::isInMemory() const
{
    return m_path == kInMemory;
}

void DatabaseFile::keepInMemory(const std::string& why)
{
    logLine(LogLevel::Warning, m_subject + " is kept in memory: " + m_path + ": " + why);
    m_path = kInMemory;
}

void DatabaseFile::setAside(const std::string& why)
{
    const std::string aside = m_path + ".damaged";
    logLine(LogLevel::Warning, m_subject + " is damaged (" + why + "); it is set aside as " + aside);
    std::error_code failed;
    fs::rename(m_path, aside, failed);
    for (const char* part : {"-wal", "-shm"}) {
        fs::remove(m_path + part, failed);
    }
}

void DatabaseFile::logUnusable(const std::string& why) const
{
    logLine(LogLevel::Warning, m_subject + " cannot be used: " + why);
}

} // namespace desktop
