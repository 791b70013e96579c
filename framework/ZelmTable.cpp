#include "framework/ZelmTable.h"

#include <iostream>
#include <unordered_map>

namespace zelm {

namespace {

constexpr std::size_t kFewestSlots = 2;

} // namespace

template <class T>
ZelmHelperUtils::Found<T> detail::missed(const void* table, const std::string& key)
{
    Watcher::miss(table, key);
    if constexpr (std::is_same_v<T, bool>) {
        std::cout << "Boolean error issues";
        return false;
    } else if constexpr (std::is_same_v<T, std::string>) {
        return unsetString;
    } else if constexpr (std::is_same_v<T, float>) {
        return unsetFloat;
    } else {
        return unsetInt;
    }
}

// The order of a hash map's elements follows from the keys and the order in which they came. Few ask for it: it is
// worked out once, by the first who does.
template <class T>
struct Table<T>::Order {
    std::once_flag once;
    bool known = false;
    std::vector<std::uint32_t> indices;
};

template <class T>
Table<T>::Table()
{
    clear();
}

template <class T>
Table<T>::~Table() = default;

template <class T>
Table<T>::Table(const Table& other)
    : m_entries(other.m_entries), m_texts(other.m_texts), m_slots(other.m_slots), m_mask(other.m_mask),
      m_shift(other.m_shift), m_order(std::make_unique<Order>())
{
}

template <class T>
Table<T>& Table<T>::operator=(const Table& other)
{
    if (this != &other)
        *this = Table(other);
    return *this;
}

template <class T>
Table<T>& Table<T>::operator=(Table&&) noexcept = default;

template <class T>
void Table<T>::clear()
{
    m_entries.clear();
    m_texts.clear();
    setSlots(kFewestSlots);
    m_order = std::make_unique<Order>();
}

template <class T>
void Table<T>::insert_or_assign(std::string_view key, T value)
{
    const std::uint64_t hash = Key(key).hash();
    for (std::size_t at = home(hash); m_slots[at].entry != emptySlot; at = (at + 1) & m_mask) {
        Entry& entry = m_entries[m_slots[at].entry];
        if (m_slots[at].tag == tagOf(hash) && std::string_view(m_texts).substr(entry.text, entry.size) == key) {
            entry.value = std::move(value);
            return;
        }
    }
    m_entries.push_back(
        {static_cast<std::uint32_t>(m_texts.size()), static_cast<std::uint32_t>(key.size()), std::move(value)});
    m_texts += key;
    if (m_entries.size() * 2 > m_slots.size())
        setSlots(m_slots.size() * 2);
    else
        place(hash, static_cast<std::uint32_t>(m_entries.size() - 1));
    if (m_order->known)
        m_order = std::make_unique<Order>();
}

template <class T>
void Table<T>::place(std::uint64_t hash, std::uint32_t entry)
{
    std::size_t at = home(hash);
    while (m_slots[at].entry != emptySlot)
        at = (at + 1) & m_mask;
    m_slots[at] = {tagOf(hash), entry};
}

template <class T>
void Table<T>::reserve(std::size_t entries)
{
    m_entries.reserve(entries);
    if (entries * 2 > m_slots.size())
        setSlots(std::bit_ceil(entries * 2));
}

template <class T>
void Table<T>::setSlots(std::size_t count)
{
    m_slots.assign(count, {0, emptySlot});
    m_mask = m_slots.size() - 1;
    m_shift = 64 - std::countr_zero(m_slots.size());
    for (std::size_t i = 0; i < m_entries.size(); ++i)
        place(Key(std::string_view(m_texts).substr(m_entries[i].text, m_entries[i].size)).hash(),
              static_cast<std::uint32_t>(i));
}

template <class T>
auto Table<T>::missing(std::initializer_list<Key> parts) const -> Found
{
    std::vector<std::string> texts;
    for (const Key& part : parts)
        texts.emplace_back(part);
    return detail::missed<T>(this, ZelmHelperUtils::mergeStrVect(texts, 0, "."));
}

template <class T>
const std::vector<std::uint32_t>& Table<T>::order() const
{
    std::call_once(m_order->once, [this] {
        std::unordered_map<std::string_view, std::uint32_t> map;
        for (std::size_t i = 0; i < m_entries.size(); ++i)
            map.emplace(std::string_view(m_texts).substr(m_entries[i].text, m_entries[i].size),
                        static_cast<std::uint32_t>(i));
        m_order->indices.reserve(map.size());
        for (const auto& [key, index] : map)
            m_order->indices.push_back(index);
        m_order->known = true;
    });
    return m_order->indices;
}

template ZelmHelperUtils::Found<bool> detail::missed<bool>(const void*, const std::string&);
template ZelmHelperUtils::Found<int> detail::missed<int>(const void*, const std::string&);
template ZelmHelperUtils::Found<float> detail::missed<float>(const void*, const std::string&);
template ZelmHelperUtils::Found<std::string> detail::missed<std::string>(const void*, const std::string&);

template class Table<bool>;
template class Table<int>;
template class Table<float>;
template class Table<std::string>;

} // namespace zelm
