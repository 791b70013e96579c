#include "host/base/JsonSource.h"

#include "host/base/Error.h"
#include "host/base/Json.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string_view>
#include <vector>

namespace zelm::host {

namespace {

using Event = nlohmann::detail::parse_event_t;

// Where the parser is: it tells no places, so the iterator that feeds it does.
struct Position {
    std::size_t line = 1;
    char last = '\0';
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
    const char* m_next;
    Position* m_position;
};

// Follows the parser's events and notes the line of every path.
class Lines {
public:
    Lines(JsonSource& source, const Position& position) : m_source(&source), m_position(&position) {}

    void on(Event event, const Json& parsed)
    {
        switch (event) {
        case Event::key:
            key(parsed.get<std::string>());
            break;
        case Event::object_start:
        case Event::array_start:
            m_open.push_back({begin(m_position->line), event == Event::array_start, 0, {}});
            break;
        case Event::object_end:
        case Event::array_end:
            m_open.pop_back();
            break;
        case Event::value:
            // The end of a number shows only in the character behind it.
            begin(m_position->line - (parsed.is_number() && m_position->last == '\n' ? 1 : 0));
            break;
        }
    }

    /// The path of the field that was begun last.
    const std::string& field() const
    {
        return m_field;
    }

private:
    struct Container {
        std::string path;
        bool isArray;
        std::size_t elements;
        std::set<std::string> keys;
    };

    void key(const std::string& name)
    {
        Container& object = m_open.back();
        m_field = object.path.empty() ? name : object.path + "." + name;
        if (!object.keys.insert(name).second)
            throw Error(fmt::format("{}:{}: the field \"{}\" stands twice in one object", m_source->file,
                                    m_position->line, name));
        m_source->lines[m_field] = m_position->line;
    }

    // A value begins: an array's next element, or what the last key names.
    std::string begin(std::size_t line)
    {
        if (m_open.empty())
            return {};
        Container& container = m_open.back();
        if (!container.isArray)
            return m_field;
        std::string path = fmt::format("{}[{}]", container.path, container.elements++);
        m_source->lines[path] = line;
        return path;
    }

    JsonSource* m_source;
    const Position* m_position;
    std::vector<Container> m_open;
    std::string m_field;
};

} // namespace

std::string JsonSource::at(const std::string& path) const
{
    for (std::string enclosing = path; !enclosing.empty();) {
        if (const auto found = lines.find(enclosing); found != lines.end())
            return fmt::format("{}:{}: {}", file, found->second, path);
        const std::size_t cut = enclosing.find_last_of(".[");
        enclosing.resize(cut == std::string::npos ? 0 : cut);
    }
    return path.empty() ? file : fmt::format("{}: {}", file, path);
}

Json parseJson(const std::string& text, JsonSource& source)
{
    Position position;
    Lines lines(source, position);
    try {
        return Json::parse(WatchedText(text.data(), position), WatchedText(text.data() + text.size(), position),
                           [&](int, Event event, const Json& parsed) {
                               lines.on(event, parsed);
                               return true;
                           });
    } catch (const Json::parse_error& error) {
        const std::string_view before = std::string_view(text).substr(0, error.byte == 0 ? 0 : error.byte - 1);
        const auto line = std::count(before.begin(), before.end(), '\n') + 1;
        const std::size_t lineStart = before.rfind('\n') + 1; // npos + 1 is 0
        std::string_view what = error.what();
        what.remove_prefix(std::min(what.size(), what.find(": ") + 2));
        throw Error(fmt::format("{}:{}:{}: {}", source.file, line, before.size() - lineStart + 1, what));
    } catch (const Json::out_of_range& error) {
        std::string_view what = error.what();
        what.remove_prefix(std::min(what.size(), what.find("] ") + 2));
        throw Error(fmt::format("{}: {}", source.at(lines.field()), what));
    }
}

Json readJson(const std::string& file, JsonSource& source)
{
    std::ifstream in(file);
    std::ostringstream text;
    if (!in || !(text << in.rdbuf()))
        throw Error(fmt::format("{}: cannot be read, or is empty", file));
    source.file = file;
    return parseJson(text.str(), source);
}

} // namespace zelm::host
