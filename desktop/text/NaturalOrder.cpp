#include "desktop/text/NaturalOrder.h"

#include <unicode/ucol.h>
#include <unicode/ustring.h>

#include <stdexcept>

namespace desktop {

void NaturalOrder::Close::operator()(UCollator* collator) const
{
    ucol_close(collator);
}

NaturalOrder::NaturalOrder()
{
    UErrorCode status = U_ZERO_ERROR;
    m_collator.reset(ucol_open("", &status)); // the root locale
    ucol_setAttribute(m_collator.get(), UCOL_NUMERIC_COLLATION, UCOL_ON, &status);
    if (U_FAILURE(status)) {
        throw std::runtime_error(std::string("no collation data: ") + u_errorName(status));
    }
}

std::string NaturalOrder::key(const std::string& name)
{
    m_utf16.resize(name.size()); // UTF-16 never needs more units than UTF-8 bytes
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(m_utf16.data(), static_cast<int32_t>(m_utf16.size()), &length, name.data(),
                  static_cast<int32_t>(name.size()), &status);
    if (U_FAILURE(status)) {
        return name;
    }
    std::string key(name.size() * 3 + 8, '\0'); // enough for most names
    const auto sortKey = [&] {
        return static_cast<std::size_t>(ucol_getSortKey(m_collator.get(), m_utf16.data(), length,
                                                        reinterpret_cast<uint8_t*>(key.data()),
                                                        static_cast<int32_t>(key.size())));
    };
    const std::size_t needed = sortKey();
    const bool complete = needed <= key.size();
    key.resize(needed);
    if (!complete) {
        sortKey();
    }
    return key;
}

} // namespace desktop
