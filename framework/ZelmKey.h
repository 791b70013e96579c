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
        // Four at a time, so that only every fourth product waits for another.
        const std::size_t inFours = text.size() / 4 * 4;
        for (std::size_t at = 0; at < inFours; at += 4) {
            const std::uint64_t high = code(text[at]) * powers[3] + code(text[at + 1]) * powers[2];
            const std::uint64_t low = code(text[at + 2]) * powers[1] + code(text[at + 3]);
            m_hash = m_hash * powers[4] + (high + low);
            m_shift *= powers[4];
        }
        for (std::size_t at = inFours; at < text.size(); ++at) {
            m_hash = m_hash * base + code(text[at]);
            m_shift *= base;
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
    static constexpr std::array<std::uint64_t, 5> powers{1, base, base* base, base* base* base, base* base* base* base};

    static constexpr std::uint64_t code(char character)
    {
        return static_cast<unsigned char>(character);
    }

    std::string_view m_text;
    std::uint64_t m_hash = 0;
    std::uint64_t m_shift = 1;
};

} // namespace zelm
