#pragma once

#include "framework/ZelmCLocale.h"
#include "framework/ZelmKey.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace zelm {

// ---- Cuts as the spreadsheet functions of the same names make them, without copies ----

/// The first count characters; empty if text is empty, or count is negative or above its length.
constexpr std::string_view left(std::string_view text, int count)
{
    const std::size_t length = static_cast<unsigned int>(count);
    return length > text.size() ? std::string_view() : text.substr(0, length);
}

/// The last count characters; empty if text is empty, or count is negative or above its length.
constexpr std::string_view right(std::string_view text, int count)
{
    const std::size_t length = static_cast<unsigned int>(count);
    return length > text.size() ? std::string_view() : text.substr(text.size() - length);
}

/// The position counted from 0, at or after start; -1 without a match.
constexpr int find(std::string_view needle, std::string_view text, int start)
{
    // "Not found" is the string library's all-ones value, whose low half is -1.
    return static_cast<int>(text.find(needle, static_cast<std::size_t>(start)));
}

constexpr int length(std::string_view text)
{
    return static_cast<int>(text.size());
}

// ---- Composing ----

/// Literals and the texts of cells one behind the other, as a formula composes a key: they are put together where they
/// are stored. Only what outlives the formula may be part of it.
class Composed {
public:
    template <class... Parts>
    explicit Composed(const Parts&... parts) : m_parts{std::string_view(parts)...}, m_count(sizeof...(parts))
    {
        static_assert(sizeof...(parts) <= kMost);
        static_assert((!std::is_same_v<Parts, std::string> && ...), "it may end with the formula");
    }

    void storeIn(std::string& cell) const
    {
        std::size_t size = 0;
        for (std::size_t i = 0; i < m_count; ++i)
            size += m_parts[i].size();
        cell.resize(size);
        char* end = cell.data();
        for (std::size_t i = 0; i < m_count; ++i)
            end = std::copy_n(m_parts[i].data(), m_parts[i].size(), end);
    }

private:
    static constexpr std::size_t kMost = 8;

    std::array<std::string_view, kMost> m_parts;
    std::size_t m_count;
};

// ---- Numbers ----

/// What std::stof makes of the text in the C locale, its exceptions too.
inline float number(std::string_view text)
{
    // Plain decimals need neither a locale nor a copy. An integer below 2^24 and a power of ten up to the tenth are
    // exact in single precision, so that only their quotient is rounded, as the C library rounds what it reads.
    constexpr std::array powersOfTen{1.0f, 1e1f, 1e2f, 1e3f, 1e4f, 1e5f, 1e6f, 1e7f, 1e8f, 1e9f, 1e10f};
    constexpr std::uint32_t endOfExact = 1u << 24;
    const std::size_t point = std::min(text.find('.'), text.size());
    const std::size_t decimals = text.size() - std::min(point + 1, text.size());
    bool plain = text.size() > (point < text.size() ? 1u : 0u) && decimals < powersOfTen.size();
    std::uint32_t digits = 0;
    for (std::size_t i = 0; plain && i < text.size(); ++i) {
        if (i == point)
            continue;
        plain = text[i] >= '0' && text[i] <= '9';
        digits = digits * 10 + static_cast<std::uint32_t>(text[i] - '0');
        plain = plain && digits < endOfExact;
    }
    if (plain)
        return static_cast<float>(digits) / powersOfTen[decimals];
    const InCLocale inCLocale;
    return std::stof(std::string(text));
}

} // namespace zelm
