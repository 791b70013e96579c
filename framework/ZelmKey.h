#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

namespace zelm {

/// A part of a table's key chain: a text, with what a look-up needs of it worked out beforehand. Literals do that while
/// they are compiled. The text has to outlive the key.
///
/// The hash is a polynomial over the characters, so that the hash of joined parts follows from those of the parts.
class Key {
public:
    constexpr Key() = default;

    template <std::size_t size>
    consteval Key(const char (&text)[size]) : Key(std::string_view(text)) // NOLINT(google-explicit-constructor)
    {
    }

    constexpr Key(std::string_view text) : m_text(text) // NOLINT(google-explicit-constructor)
    {
        // In blocks, within which no product waits for another.
        for (std::string_view rest = text; !rest.empty();) {
            const std::size_t size = rest.size() < powers.size() ? rest.size() : powers.size() - 1;
            std::uint64_t sum = 0;
            for (std::size_t i = 0; i < size; ++i)
                sum += static_cast<unsigned char>(rest[i]) * powers[size - 1 - i];
            m_hash = m_hash * powers[size] + sum;
            m_shift *= powers[size];
            rest.remove_prefix(size);
        }
    }

    Key(const std::string& text) : Key(std::string_view(text)) {} // NOLINT(google-explicit-constructor)

    constexpr operator std::string_view() const // NOLINT(google-explicit-constructor)
    {
        return m_text;
    }

    constexpr std::string_view text() const
    {
        return m_text;
    }
    constexpr bool empty() const
    {
        return m_text.empty();
    }
    constexpr std::uint64_t hash() const
    {
        return m_hash;
    }
    /// The base to the power of the text's length: what the hash of a text in front of this one is multiplied with.
    constexpr std::uint64_t shift() const
    {
        return m_shift;
    }

    friend constexpr bool operator==(const Key& a, std::string_view b)
    {
        return a.m_text == b;
    }
    friend std::ostream& operator<<(std::ostream& out, const Key& key)
    {
        return out << key.m_text;
    }

    static constexpr std::uint64_t base = 0x9e3779b97f4a7c15; // odd: no power of it is 0

private:
    static constexpr std::array<std::uint64_t, 17> powers = [] {
        std::array<std::uint64_t, 17> all{1};
        for (std::size_t i = 1; i < all.size(); ++i)
            all[i] = all[i - 1] * base;
        return all;
    }();

    std::string_view m_text;
    std::uint64_t m_hash = 0;
    std::uint64_t m_shift = 1;
};

} // namespace zelm
