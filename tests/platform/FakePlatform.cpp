#include "platform/FakePlatform.h"

#include "platform/SocMwLog.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <iostream>
#include <stdexcept>

namespace {

FakePlatform* current = nullptr;

} // namespace

FakePlatform::FakePlatform()
{
    if (current != nullptr) {
        throw std::logic_error("one fake platform at a time");
    }
    current = this;
    storageManager = std::make_shared<SocMwStorageUsbMgr>();
    systemManager = std::make_shared<SocMwSystemMgr>();
}

FakePlatform::~FakePlatform()
{
    // What a failing assertion has said went where the plugin's output goes.
    if (testing::Test::HasFailure()) {
        std::cerr << m_output.take();
    }
    current = nullptr;
}

FakePlatform& FakePlatform::instance()
{
    if (current == nullptr) {
        throw std::logic_error("no fake platform");
    }
    return *current;
}

void FakePlatform::record(const std::string& call)
{
    catchUp();
    m_journal += "<" + call + ">\n";
}

std::string FakePlatform::takeJournal()
{
    catchUp();
    return std::exchange(m_journal, std::string());
}

void FakePlatform::catchUp()
{
    m_journal += m_output.take();
    if (onJournal) {
        m_journal += onJournal();
    }
}

int FakePlatform::status(const std::string& operation) const
{
    const auto found = statuses.find(operation);
    return found != statuses.end() ? found->second : 0;
}

int FakePlatform::nextLogLevel()
{
    catchUp();
    if (logLevels.empty()) {
        return logLevel;
    }
    const int level = logLevels.front();
    logLevels.pop_front();
    return level;
}

int gSocMwStorageLogLevel = -1;

int SocMwLogLevelGet()
{
    return FakePlatform::instance().nextLogLevel();
}

void SocMwLogPrintEx(const char* tag, int level, char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    char text[512] = {};
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    FakePlatform::instance().record("log " + std::string(tag) + " " + std::to_string(level) + " " + text);
}
