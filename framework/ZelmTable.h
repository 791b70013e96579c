#pragma once

#include "framework/ZelmExport.h"
#include "framework/ZelmHelperUtils.h"
#include "framework/ZelmKey.h"
#include "framework/ZelmWatcher.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace zelm {

namespace detail {

// GCC 12 sees the words that a literal shorter than them would be read by, though it never is.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Warray-bounds"

/// Whether size characters are the same. Shorter texts than a call is worth.
[[gnu::always_inline]] inline bool sameText(const char* a, const char* b, std::size_t size)
{
    const auto same = [&]<class Word>(std::size_t at, Word) {
        Word left;
        Word right;
        std::memcpy(&left, a + at, sizeof left);
        std::memcpy(&right, b + at, sizeof right);
        return left == right;
    };
    if (size >= 8) {
        for (std::size_t at = 0; at + 8 < size; at += 8)
            if (!same(at, std::uint64_t{}))
                return false;
        return same(size - 8, std::uint64_t{});
    }
    if (size >= 4)
        return same(0, std::uint32_t{}) && same(size - 4, std::uint32_t{});
    for (std::size_t at = 0; at < size; ++at)
        if (a[at] != b[at])
            return false;
    return true;
}

#pragma GCC diagnostic pop

/// The parts of a key chain, joined by '.' as mergeStrVect joins them: an empty part takes the separator away too.
class JoinedKey {
public:
    void add(const Key& part)
    {
        const bool separated = m_behindText && !part.empty();
        // As one product, so that only it waits for the parts before.
        const std::uint64_t separator = separated ? static_cast<unsigned char>('.') : 0u;
        m_hash =
            m_hash * (separated ? part.shift() * Key::base : part.shift()) + (separator * part.shift() + part.hash());
        m_size += part.text().size() + (separated ? 1u : 0u);
        m_behindText = !part.empty();
    }

    std::uint64_t hash() const
    {
        return m_hash;
    }
    std::size_t size() const
    {
        return m_size;
    }

private:
    std::uint64_t m_hash = 0;
    std::size_t m_size = 0;
    bool m_behindText = false;
};

/// What a look-up that found nothing gives, told to the watcher of misses: the type's unset sentinel; in a bool table
/// false, with "Boolean error issues" on standard output.
template <class T>
ZelmHelperUtils::Found<T> missed(const void* table, const std::string& key);

} // namespace detail

/// A characterisation table: scalar values under joined keys. Look-ups go by the hashes of the key's parts and check a
/// hit against its text. Filled once, then only read, by any number of threads.
template <class T>
class ZELM_EXPORT Table {
public:
    using Found = ZelmHelperUtils::Found<T>;

    Table();
    ~Table();
    Table(const Table& other);
    Table& operator=(const Table& other);

    void clear();
    /// Makes room for as many entries in all.
    void reserve(std::size_t entries);
    void insert_or_assign(std::string_view key, T value); // NOLINT(readability-identifier-naming): as a map's

    std::size_t size() const
    {
        return m_entries.size();
    }

    /// The value under the joined parts. A miss gives the type's unset sentinel; in a bool table it writes
    /// "Boolean error issues" on standard output and gives false.
    template <class... Keys>
    Found find(const Keys&... parts) const
    {
        detail::JoinedKey joined;
        (joined.add(parts), ...);
        const std::uint64_t hash = joined.hash();
        for (std::size_t at = home(hash);; at = (at + 1) & m_mask) {
            const Slot& slot = m_slots[at];
            if (slot.entry == emptySlot)
                break;
            if (slot.tag != tagOf(hash))
                continue;
            const Entry& entry = m_entries[slot.entry];
            if (entry.size == joined.size() && isText(m_texts.data() + entry.text, parts...)) [[likely]]
                return entry.value;
        }
        return missing({parts...});
    }

    /// Calls visit(key, value) for all entries, in the order that a hash map of them has.
    template <class Visit>
    void forEach(Visit visit) const
    {
        for (const std::uint32_t index : order()) {
            const Entry& entry = m_entries[index];
            visit(std::string_view(m_texts).substr(entry.text, entry.size), entry.value);
        }
    }

private:
    Table& operator=(Table&& other) noexcept;

    static constexpr std::uint32_t emptySlot = 0xffffffff;

    // Small, for look-ups wait for memory more than for anything else: some tables hold thousands of rows.
    struct Entry {
        std::uint32_t text; // where its key begins
        std::uint32_t size;
        T value;
    };
    struct Slot {
        std::uint32_t tag;
        std::uint32_t entry;
    };
    struct Order; // the entries' indices in a map's order, worked out when somebody asks

    std::size_t home(std::uint64_t hash) const
    {
        return static_cast<std::size_t>((hash * Key::base) >> m_shift);
    }
    static std::uint32_t tagOf(std::uint64_t hash)
    {
        return static_cast<std::uint32_t>(hash ^ (hash >> 32));
    }

    template <class... Keys>
    static bool isText(const char* text, const Keys&... parts)
    {
        bool behindText = false;
        return (isPart(text, behindText, parts) && ...);
    }

    // Moves text behind the part.
    [[gnu::always_inline]] static bool isPart(const char*& text, bool& behindText, const Key& part)
    {
        if (part.empty()) {
            behindText = false;
            return true;
        }
        if (behindText && *text++ != '.')
            return false;
        behindText = true;
        const bool same = detail::sameText(text, part.text().data(), part.text().size());
        text += part.text().size();
        return same;
    }

    Found missing(std::initializer_list<Key> parts) const;
    void place(std::uint64_t hash, std::uint32_t entry);
    void setSlots(std::size_t count);
    const std::vector<std::uint32_t>& order() const;

    std::vector<Entry> m_entries;
    std::string m_texts;
    std::vector<Slot> m_slots;
    std::size_t m_mask = 0;
    int m_shift = 63;
    std::unique_ptr<Order> m_order;
};

extern template class Table<bool>;
extern template class Table<int>;
extern template class Table<float>;
extern template class Table<std::string>;

} // namespace zelm
