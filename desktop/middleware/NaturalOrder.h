#pragma once

#include <memory>
#include <string>

struct UCollator;

namespace desktop {

/// The order in which people expect names: letters by alphabet whatever their case or accents, numbers by value. The same on
/// every computer: it depends on no locale. One object serves one thread.
class NaturalOrder {
public:
    NaturalOrder();

    /// A key for the UTF-8 text @p name; keys compare bytewise. Different names may have one key.
    std::string key(const std::string& name);

private:
    struct Close {
        void operator()(UCollator* collator) const;
    };
    std::unique_ptr<UCollator, Close> m_collator;
    std::u16string m_utf16;
};

} // namespace desktop
