#include "storage/Log.h"

#include <ctime>

namespace tvfirmware {

namespace {

constexpr std::size_t kTimeLength = 24;

} // namespace

LogTime::LogTime()
    : m_text{}
{
    const std::time_t now = std::time(nullptr);
    ctime_r(&now, m_text);
    m_text[kTimeLength] = '\0';
}

} // namespace tvfirmware
