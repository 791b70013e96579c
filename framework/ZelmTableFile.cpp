#include "framework/ZelmTableFile.h"

#include "framework/ZelmKey.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <type_traits>

namespace zelm {

namespace {

// Empty if it can't be read: a pipe, say, gives what it has only once.
std::string ordinaryFile(const std::string& path)
{
    std::error_code unexamined;
    if (!std::filesystem::is_regular_file(path, unexamined))
        return {};
    const auto size = std::filesystem::file_size(path, unexamined);
    std::ifstream file(path, std::ios::binary);
    if (unexamined || !file)
        return {};
    std::string text(static_cast<std::size_t>(size), '\0');
    file.read(text.data(), static_cast<std::streamsize>(size));
    return file ? text : std::string();
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// true and false in any case are values everywhere.
bool isTruth(std::string_view word)
{
    const auto is = [&](std::string_view lower) {
        return std::equal(word.begin(), word.end(), lower.begin(), lower.end(),
                          [](char a, char b) { return (a | 0x20) == b; });
    };
    return is("true") || is("false");
}

} // namespace

// Goes over a text that ends in a zero, and stops where it knows no more.
class TableFile::Scanner {
public:
    Scanner(const std::string& text, std::vector<Setting>& settings)
        : m_at(text.data()), m_end(text.data() + text.size()), m_settings(settings)
    {
    }

    /// Whether it got to the end, all groups are closed and no name stands twice in a group.
    bool isPlain()
    {
        skipBlanks();
        while (m_at != m_end) {
            if (!(*m_at == '}' ? closeGroup() : readSetting()))
                return false;
            skipBlanks();
        }
        return m_open.empty() && areDistinct(0);
    }

private:
    static constexpr std::size_t kDeepest = 32; // data have six

    void skipBlanks()
    {
        for (;;) {
            while (*m_at == ' ' || *m_at == '\n' || *m_at == '\t')
                ++m_at;
            if (*m_at != '#' && (*m_at != '/' || m_at[1] != '/'))
                return;
            const void* end = std::memchr(m_at, '\n', static_cast<std::size_t>(m_end - m_at));
            if (!end) // a comment without an end isn't one in all of libconfig's releases
                return;
            m_at = static_cast<const char*>(end);
        }
    }

    bool take(char c)
    {
        skipBlanks();
        if (*m_at != c)
            return false;
        ++m_at;
        return true;
    }

    // Of the names from one on, which are those of the innermost group.
    bool areDistinct(std::size_t first)
    {
        const auto begin = m_names.begin() + static_cast<std::ptrdiff_t>(first);
        std::sort(begin, m_names.end());
        return std::adjacent_find(begin, m_names.end()) == m_names.end();
    }

    bool closeGroup()
    {
        ++m_at;
        if (m_open.empty() || !areDistinct(m_open.back().names))
            return false;
        m_names.resize(m_open.back().names);
        std::get<Group>(m_settings[m_open.back().setting].value).end = m_settings.size();
        m_open.pop_back();
        return take(';');
    }

    std::string_view readWord()
    {
        const char* const begin = m_at;
        if (isLetter(*m_at))
            while (isLetter(*m_at) || isDigit(*m_at) || *m_at == '_' || *m_at == '-')
                ++m_at;
        return {begin, static_cast<std::size_t>(m_at - begin)};
    }

    bool readSetting()
    {
        const std::string_view name = readWord();
        if (name.empty() || isTruth(name) || !(take('=') || take(':')))
            return false;
        m_names.push_back(Key(name).hash());
        skipBlanks();
        if (*m_at == '{') {
            ++m_at;
            m_open.push_back({m_settings.size(), m_names.size()});
            m_settings.push_back({name, Group{0}});
            return m_open.size() <= kDeepest;
        }
        const std::optional<Value> value = readValue();
        if (!value)
            return false;
        m_settings.push_back({name, *value});
        return take(';');
    }

    std::optional<Value> readValue()
    {
        if (*m_at == '"')
            return readString();
        if (*m_at == '-' || isDigit(*m_at))
            return readNumber();
        const std::string_view word = readWord();
        return word == "true" || word == "false" ? std::optional<Value>(word == "true") : std::nullopt;
    }

    std::optional<Value> readString()
    {
        const char* const begin = ++m_at;
        while (*m_at != '"' && *m_at != '\\' && static_cast<unsigned char>(*m_at) >= ' ')
            ++m_at;
        if (*m_at != '"')
            return std::nullopt;
        return std::string_view(begin, static_cast<std::size_t>(m_at++ - begin));
    }

    std::optional<Value> readNumber()
    {
        const char* const digits = *m_at == '-' ? m_at + 1 : m_at;
        int whole = 0;
        auto parsed = std::from_chars(m_at, m_end, whole);
        if (parsed.ec != std::errc())
            return std::nullopt;
        if (*parsed.ptr != '.') {
            m_at = parsed.ptr;
            const bool octal = *digits == '0' && m_at - digits > 1;
            return octal ? std::nullopt : std::optional<Value>(whole);
        }
#ifdef __cpp_lib_to_chars
        double number = 0.0;
        parsed = std::from_chars(m_at, m_end, number);
        m_at = parsed.ptr;
        return parsed.ec == std::errc() ? std::optional<Value>(number) : std::nullopt;
#else
        return std::nullopt; // the standard library can't read it independently of the locale
#endif
    }

    struct OpenGroup {
        std::size_t setting;
        std::size_t names; // where its own begin
    };

    const char* m_at;
    const char* m_end;
    std::vector<Setting>& m_settings;
    std::vector<OpenGroup> m_open;
    // Those of the open groups, as hashes: two that happen to be alike only make the file libconfig's.
    std::vector<std::uint64_t> m_names;
};

TableFile::TableFile(const std::string& path)
    : m_text(ordinaryFile(path)), m_plain(!m_text.empty() && Scanner(m_text, m_settings).isPlain())
{
}

const TableFile::Setting* TableFile::findGroup(std::size_t begin, std::size_t end, std::string_view name) const
{
    for (std::size_t i = begin; i < end;) {
        const Setting& setting = m_settings[i];
        const Group* const group = std::get_if<Group>(&setting.value);
        if (setting.name == name)
            return group ? &setting : nullptr;
        i = group ? group->end : i + 1;
    }
    return nullptr;
}

template <class T>
bool TableFile::loadTable(std::string_view block, std::string_view group, Table<T>& table) const
{
    const auto index = [&](const Setting* setting) { return static_cast<std::size_t>(setting - m_settings.data()); };
    const Setting* found = findGroup(0, m_settings.size(), block);
    if (found)
        found = findGroup(index(found) + 1, std::get<Group>(found->value).end, group);
    if (!found)
        return false;
    const std::size_t begin = index(found) + 1;
    const std::size_t end = std::get<Group>(found->value).end;
    const auto isRow = [](const Setting& setting) { return !std::holds_alternative<Group>(setting.value); };
    table.reserve(static_cast<std::size_t>(std::count_if(m_settings.data() + begin, m_settings.data() + end, isRow)));
    std::string key;
    return loadRows(begin, end, key, table);
}

template <class T>
bool TableFile::loadRows(std::size_t begin, std::size_t end, std::string& key, Table<T>& table) const
{
    const std::size_t length = key.size();
    for (std::size_t i = begin; i < end;) {
        const Setting& setting = m_settings[i++];
        key += setting.name;
        if (const Group* group = std::get_if<Group>(&setting.value)) {
            key += '.';
            if (!loadRows(i, group->end, key, table))
                return false;
            i = group->end;
        } else if (!put(key, setting.value, table)) {
            return false;
        }
        key.resize(length);
    }
    return true;
}

// A value that doesn't convert is left out.
template <class T>
bool TableFile::put(std::string_view key, const Value& value, Table<T>& table)
{
    if constexpr (std::is_same_v<T, std::string>) {
        if (const auto* text = std::get_if<std::string_view>(&value))
            table.insert_or_assign(key, std::string(*text));
    } else if constexpr (std::is_same_v<T, float>) {
        if (const auto* number = std::get_if<double>(&value))
            table.insert_or_assign(key, static_cast<float>(*number));
        else if (const auto* whole = std::get_if<int>(&value))
            table.insert_or_assign(key, static_cast<float>(*whole));
    } else {
        if (const auto* same = std::get_if<T>(&value))
            table.insert_or_assign(key, *same);
        else if (std::is_same_v<T, int> && std::holds_alternative<double>(value))
            return false;
    }
    return true;
}

bool TableFile::load(std::string_view block, std::string_view group, Table<bool>& table) const
{
    return loadTable(block, group, table);
}

bool TableFile::load(std::string_view block, std::string_view group, Table<int>& table) const
{
    return loadTable(block, group, table);
}

bool TableFile::load(std::string_view block, std::string_view group, Table<float>& table) const
{
    return loadTable(block, group, table);
}

bool TableFile::load(std::string_view block, std::string_view group, Table<std::string>& table) const
{
    return loadTable(block, group, table);
}

} // namespace zelm
