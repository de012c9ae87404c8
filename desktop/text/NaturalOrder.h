#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

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

/// Puts @p items in the natural order of the names that @p nameOf gives them; equal names stay in their order.
template <typename Item, typename NameOf>
void sortNaturally(std::vector<Item>& items, const NameOf& nameOf)
{
    NaturalOrder order;
    std::vector<std::pair<std::string, Item>> keyed;
    keyed.reserve(items.size());
    for (Item& item : items) {
        std::string key = order.key(nameOf(item));
        keyed.emplace_back(std::move(key), std::move(item));
    }
    std::stable_sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (std::size_t i = 0; i < items.size(); ++i) {
        items[i] = std::move(keyed[i].second);
    }
}

} // namespace desktop
