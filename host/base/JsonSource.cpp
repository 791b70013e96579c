#include "host/base/JsonSource.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Json.h"
#include "host/base/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace zelm::host {

namespace {

// A design has four levels.
constexpr std::size_t kDeepest = 64;
// A hundred thousand groups of ten inputs fit. With 256 MB of text, it takes some 700 MB.
constexpr std::size_t kMostValues = 1'500'000;
constexpr std::size_t kLongestName = 1000;
constexpr std::size_t kLongestValue = 1'000'000; // the parser gathers texts, numbers and gaps before it tells of them

// Hashes of paths grow by their parts, so that a field costs as much as its own name (64-bit FNV-1a).
constexpr std::uint64_t kNoPath = 0xcbf29ce484222325U;

std::uint64_t hashed(std::uint64_t path, std::string_view part)
{
    for (const char c : part)
        path = (path ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
    return path;
}

// Where the parser is: it tells no places, so the iterator that feeds it does.
struct Position {
    const std::string* file;
    std::size_t line = 1;
    char last = '\0';
    bool inText = false;
    bool escaped = false;    ///< the next character of a text is no quotation mark
    std::size_t longest = 0; ///< characters of what is being read: a text, a number, a gap
};

class WatchedText {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    WatchedText(const char* next, Position& position) : m_next(next), m_position(&position) {}

    reference operator*() const
    {
        return *m_next;
    }
    WatchedText& operator++()
    {
        m_position->last = *m_next++;
        m_position->line += m_position->last == '\n' ? 1 : 0;
        measure();
        return *this;
    }
    bool operator==(const WatchedText& other) const
    {
        return m_next == other.m_next;
    }
    bool operator!=(const WatchedText& other) const
    {
        return m_next != other.m_next;
    }

private:
    void measure()
    {
        Position& here = *m_position;
        const char c = here.last;
        const bool quote = c == '"' && !here.escaped; // one in a comment only counts too much
        here.inText = here.inText != quote;
        here.escaped = here.inText && c == '\\' && !here.escaped;
        const bool ends = quote || (!here.inText && std::string_view(",:[]{}").find(c) != std::string_view::npos);
        here.longest = ends ? 0 : here.longest + 1;
        if (here.longest > kLongestValue)
            throw Error(fmt::format("{}:{}: a text, number or gap of more than {} characters", *here.file, here.line,
                                    kLongestValue));
    }

    const char* m_next;
    Position* m_position;
};

// Builds the value from the parser's events and notes the lines of its fields. The members' names are the parser's.
class Builder {
public:
    using number_integer_t = Json::number_integer_t;
    using number_unsigned_t = Json::number_unsigned_t;
    using number_float_t = Json::number_float_t;
    using string_t = Json::string_t;
    using binary_t = Json::binary_t;

    Builder(const std::string& file, const std::string& text, const Position& position)
        : m_file(&file), m_text(&text), m_position(&position)
    {
    }

    bool null() // NOLINT(readability-identifier-naming)
    {
        return take(Json());
    }
    bool boolean(bool value)
    {
        return take(value);
    }
    bool number_integer(number_integer_t value) // NOLINT(readability-identifier-naming)
    {
        return take(value, behindNumber());
    }
    bool number_unsigned(number_unsigned_t value) // NOLINT(readability-identifier-naming)
    {
        return take(value, behindNumber());
    }
    bool number_float(number_float_t value, const string_t&) // NOLINT(readability-identifier-naming)
    {
        return take(value, behindNumber());
    }
    bool string(string_t& value)
    {
        return take(std::move(value));
    }
    bool binary(binary_t&)
    {
        return false; // not in texts
    }
    bool start_object(std::size_t) // NOLINT(readability-identifier-naming)
    {
        return open(Json::object());
    }
    bool start_array(std::size_t) // NOLINT(readability-identifier-naming)
    {
        return open(Json::array());
    }
    bool end_object() // NOLINT(readability-identifier-naming)
    {
        return close();
    }
    bool end_array() // NOLINT(readability-identifier-naming)
    {
        return close();
    }

    bool key(string_t& name)
    {
        Level& object = m_levels.back();
        if (name.size() > kLongestName)
            fail(fmt::format("a field's name has {} characters: {}", name.size(), abbreviated(name)));
        if (!object.names.insert(hashed(kNoPath, name)).second && hasField(*object.value, name))
            fail(fmt::format("the field \"{}\" stands twice in one object", abbreviated(name)));
        m_field = object.path == kNoPath ? hashed(kNoPath, name) : hashed(hashed(object.path, "."), name);
        m_fieldLine = note(m_field, m_position->line, object.line);
        m_fieldName = std::move(name);
        return true;
    }

    bool parse_error(std::size_t byte, const std::string&, // NOLINT(readability-identifier-naming)
                     const nlohmann::detail::exception& error)
    {
        std::string_view what = error.what();
        if (dynamic_cast<const Json::out_of_range*>(&error)) {
            what.remove_prefix(std::min(what.size(), what.find("] ") + 2));
            throw Error(
                fmt::format("{}:{}: {}: {}", *m_file, behindNumber(), pathHere(), abbreviated(what, kMostWords)));
        }
        const std::string_view before = std::string_view(*m_text).substr(0, byte == 0 ? 0 : byte - 1);
        const auto line = std::count(before.begin(), before.end(), '\n') + 1;
        const std::size_t lineStart = before.rfind('\n') + 1; // npos + 1 is 0
        what.remove_prefix(std::min(what.size(), what.find(": ") + 2));
        throw Error(fmt::format("{}:{}:{}: {}", *m_file, line, before.size() - lineStart + 1, withoutLongToken(what)));
    }

    Json& root()
    {
        return m_root;
    }
    JsonSource::Lines& lines()
    {
        return m_lines;
    }

private:
    static constexpr std::size_t kMostWords = 200;

    struct Level {
        Json* value;
        std::string name; ///< in its enclosing object; empty for elements
        std::uint64_t path;
        std::size_t line;
        std::unordered_set<std::uint64_t> names{}; ///< their hashes: many names take much memory
    };

    // Looks through all fields, which the hash of a name makes rare.
    static bool hasField(const Json& object, const std::string& name)
    {
        const auto& fields = object.get_ref<const Json::object_t&>();
        return std::any_of(fields.begin(), fields.end(), [&](const auto& field) { return field.first == name; });
    }

    [[noreturn]] void fail(const std::string& message) const
    {
        throw Error(fmt::format("{}:{}: {}", *m_file, m_position->line, message));
    }

    // The parser tells all that it read last: "syntax error ... - invalid string: ...; last read: '...'".
    static std::string withoutLongToken(std::string_view what)
    {
        constexpr std::string_view mark = "last read: '";
        const std::size_t at = what.find(mark);
        if (at == std::string_view::npos)
            return std::string(what);
        const std::size_t start = at + mark.size();
        const std::size_t end = what.rfind('\'');
        return fmt::format("{}{}{}", what.substr(0, start), abbreviated(what.substr(start, end - start)),
                           what.substr(end));
    }

    // The end of a number shows only in the character behind it.
    std::size_t behindNumber() const
    {
        return m_position->line - (m_position->last == '\n' ? 1 : 0);
    }

    std::string pathHere() const
    {
        std::string path;
        for (std::size_t i = 0; i < m_levels.size(); ++i) {
            const bool last = i + 1 == m_levels.size();
            const Json& value = *m_levels[i].value;
            if (value.is_array())
                path += fmt::format("[{}]", value.size() - (last ? 0 : 1));
            else
                path += (path.empty() ? "" : ".") + (last ? m_fieldName : m_levels[i + 1].name);
        }
        return path;
    }

    // A line is kept only where it differs from that of what encloses the field: for what nothing encloses, always.
    std::size_t note(std::uint64_t path, std::size_t line, std::size_t enclosing)
    {
        if (line != enclosing || m_levels.size() == 1)
            m_lines[path] = line;
        return line;
    }

    // The place of a value that begins: path and line. The path only where it is kept, or where more follows below it.
    std::pair<std::uint64_t, std::size_t> begin(std::size_t line, bool holdsMore)
    {
        if (++m_values > kMostValues)
            fail(fmt::format("more than {} values", kMostValues));
        if (m_levels.empty())
            return {kNoPath, line};
        const Level& level = m_levels.back();
        if (level.value->is_object())
            return {m_field, m_fieldLine};
        if (!holdsMore && line == level.line && m_levels.size() > 1)
            return {kNoPath, line};
        const std::uint64_t path = hashed(level.path, fmt::format("[{}]", level.value->size()));
        return {path, note(path, line, level.line)};
    }

    Json& put(Json value)
    {
        if (m_levels.empty())
            return m_root = std::move(value);
        Json& parent = *m_levels.back().value;
        if (parent.is_array()) {
            parent.push_back(std::move(value));
            return parent.back();
        }
        // Names are known to differ: the type's own insertion would look through all fields for each of them.
        auto& fields = parent.get_ref<Json::object_t&>();
        fields.push_back({m_fieldName, std::move(value)});
        return fields.back().second;
    }

    bool take(Json value, std::size_t line = 0)
    {
        begin(line == 0 ? m_position->line : line, false);
        put(std::move(value));
        return true;
    }

    bool open(Json container)
    {
        if (m_levels.size() == kDeepest)
            fail(fmt::format("lists and objects stand more than {} deep in each other", kDeepest));
        const auto [path, line] = begin(m_position->line, true);
        std::string name = !m_levels.empty() && m_levels.back().value->is_object() ? m_fieldName : std::string();
        Json& value = put(std::move(container));
        m_levels.push_back({&value, std::move(name), path, line});
        return true;
    }

    bool close()
    {
        m_levels.pop_back();
        return true;
    }

    const std::string* m_file;
    const std::string* m_text;
    const Position* m_position;
    Json m_root;
    JsonSource::Lines m_lines;
    std::vector<Level> m_levels;
    std::string m_fieldName;
    std::uint64_t m_field = kNoPath;
    std::size_t m_fieldLine = 0;
    std::size_t m_values = 0;
};

} // namespace

namespace {

// The path of what encloses a field or an element; empty for what nothing encloses.
std::string_view enclosingPath(std::string_view path)
{
    const std::size_t cut = path.find_last_of(".[");
    return path.substr(0, cut == std::string_view::npos ? 0 : cut);
}

std::size_t lineIn(const JsonSource::Lines* lines, const std::string& path)
{
    for (std::string_view enclosing = path; lines && !enclosing.empty(); enclosing = enclosingPath(enclosing)) {
        if (const auto found = lines->find(hashed(kNoPath, enclosing)); found != lines->end())
            return found->second;
    }
    return 0;
}

std::string placeIn(const std::string& file, const JsonSource::Lines* lines, const std::string& path)
{
    if (const std::size_t line = lineIn(lines, path))
        return fmt::format("{}:{}: {}", file, line, abbreviated(path, 200));
    return path.empty() ? file : fmt::format("{}: {}", file, abbreviated(path, 200));
}

} // namespace

const JsonSource::Included* JsonSource::inclusionOf(std::string_view path, std::string_view& enclosing) const
{
    if (!included)
        return nullptr;
    for (enclosing = path; !enclosing.empty(); enclosing = enclosingPath(enclosing)) {
        if (const auto found = included->find(std::string(enclosing)); found != included->end())
            return &found->second;
    }
    return nullptr;
}

std::string JsonSource::at(const std::string& path) const
{
    std::string_view enclosing;
    if (const Included* other = inclusionOf(path, enclosing))
        return placeIn(other->file, other->lines.get(), other->path + path.substr(enclosing.size()));
    return placeIn(file, lines.get(), path);
}

std::pair<std::string, std::size_t> JsonSource::lineOf(const std::string& path) const
{
    std::string_view enclosing;
    if (const Included* other = inclusionOf(path, enclosing))
        return {other->file, lineIn(other->lines.get(), other->path + path.substr(enclosing.size()))};
    return {file, lineIn(lines.get(), path)};
}

std::vector<std::string> JsonSource::scopesOf(const std::string& path) const
{
    std::string_view enclosing;
    const Included* other = inclusionOf(path, enclosing);
    return other ? other->scopes : std::vector<std::string>();
}

std::vector<std::string> JsonSource::includedFiles() const
{
    std::set<std::string> files;
    for (const auto& [path, field] : included ? *included : Inclusions())
        files.insert(field.file);
    return {files.begin(), files.end()};
}

Json parseJson(const std::string& text, JsonSource& source)
{
    Position position{&source.file};
    Builder builder(source.file, text, position);
    constexpr bool whole = true;
    constexpr bool withComments = true;
    Json::sax_parse(WatchedText(text.data(), position), WatchedText(text.data() + text.size(), position), &builder,
                    nlohmann::detail::input_format_t::json, whole, withComments);
    source.lines = std::make_shared<const JsonSource::Lines>(std::move(builder.lines()));
    return std::move(builder.root());
}

Json readJson(const std::string& file, JsonSource& source)
{
    const std::string text = readFile(file);
    source.file = file == kStandardInput ? "standard input" : file;
    return parseJson(text, source);
}

} // namespace zelm::host
