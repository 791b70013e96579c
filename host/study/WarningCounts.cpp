#include "host/study/WarningCounts.h"

#include "host/base/Text.h"

#include <fmt/format.h>

#include <set>

namespace zelm::host {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isOfWord(char c)
{
    return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

// The end of the number that begins here.
std::size_t endOfNumber(std::string_view text, std::size_t begin)
{
    std::size_t end = begin;
    const auto isAt = [&](std::size_t place, auto&& what) { return place < text.size() && what(text[place]); };
    const auto digits = [&] {
        while (isAt(end, isDigit))
            ++end;
    };
    digits();
    if (isAt(end, [](char c) { return c == '.'; }) && isAt(end + 1, isDigit)) {
        ++end;
        digits();
    }
    const auto isExponent = [](char c) { return c == 'e'; };
    const auto isSign = [](char c) { return c == '-' || c == '+'; };
    if (isAt(end, isExponent) && isAt(end + 1, isSign) && isAt(end + 2, isDigit)) {
        end += 2;
        digits();
    }
    return end;
}

} // namespace

std::string withoutNumbers(std::string_view text)
{
    std::string words;
    bool isQuoted = false;
    for (std::size_t i = 0; i < text.size();) {
        isQuoted = isQuoted != (text[i] == '"');
        if (!isQuoted && isDigit(text[i]) && (i == 0 || !isOfWord(text[i - 1]))) {
            if (!words.empty() && words.back() == '-')
                words.pop_back();
            words += '#';
            i = endOfNumber(text, i);
        } else {
            words += text[i++];
        }
    }
    return words;
}

void WarningCounts::add(const std::vector<std::string>& warnings)
{
    std::set<std::string> own; // a point counts once
    for (const std::string& warning : warnings) {
        if (own.insert(withoutNumbers(warning)).second)
            addRow(Row{warning, 1, true});
    }
}

void WarningCounts::addLater(const WarningCounts& later)
{
    for (const Row& row : later.m_rows)
        addRow(row);
    m_others += later.m_others;
}

void WarningCounts::addRow(const Row& later)
{
    constexpr std::size_t most = 1000;
    const auto [known, isNew] = m_places.try_emplace(withoutNumbers(later.text), m_rows.size());
    if (!isNew) {
        Row& row = m_rows[known->second];
        row.points += later.points;
        row.isSame = row.isSame && later.isSame && row.text == later.text;
    } else if (m_rows.size() < most) {
        m_rows.push_back(later);
    } else {
        m_places.erase(known);
        m_others += later.points;
    }
}

std::string warningLine(const WarningCounts::Row& row, std::size_t points)
{
    return fmt::format("{} (at {} of {} points{})", shown(row.text), row.points, points,
                       row.isSame ? "" : ", numbers of the first");
}

} // namespace zelm::host
