#include "host/design/Format.h"

#include "host/base/Json.h"
#include "host/base/JsonSource.h"
#include "host/base/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace zelm::host {

namespace {

constexpr std::size_t kWidest = 120;

constexpr std::string_view kDesignOrder[] = {
    "$schema",  "name",     "description", "include", "parameters", "device", "environment", "rails", "regulators",
    "supplies", "sequence", "battery",     "thermal", "budgets",    "modes",  "static",      "groups"};
constexpr std::string_view kGroupOrder[] = {"block", "name", "count", "in", "clock", "inputs"};

struct Comment {
    std::string text;
    bool afterBlank = false; ///< an empty line stands before it
};

// A value as it is written, with what it holds and the comments on that.
struct Node {
    struct Item;
    char open = '\0'; ///< '{' or '['; else text is all of it
    std::string text;
    std::vector<Item> items;
    std::vector<Comment> last{}; ///< comments behind all items
};

struct Node::Item {
    std::vector<Comment> before{};
    std::vector<std::string> behind{}; ///< on its line
    bool afterBlank = false;
    std::string key{}; ///< with its quotes; empty in a list
    Node value{};
};

// Reads JSON that is known to be right into nodes.
class Reader {
public:
    explicit Reader(std::string_view text) : m_text(text) {}

    Node::Item root()
    {
        Node::Item item;
        item.before = comments();
        item.value = value();
        item.behind = commentsOnLine();
        for (Comment& comment : comments())
            m_end.push_back(std::move(comment));
        return item;
    }
    const std::vector<Comment>& end() const
    {
        return m_end;
    }

private:
    bool atEnd() const
    {
        return m_next >= m_text.size();
    }
    char here() const
    {
        return atEnd() ? '\0' : m_text[m_next];
    }

    // Passes spaces; how many lines they end.
    std::size_t spaces()
    {
        std::size_t lines = 0;
        for (; !atEnd() && std::string_view(" \t\r\n").find(here()) != std::string_view::npos; ++m_next)
            lines += here() == '\n' ? 1U : 0U;
        return lines;
    }

    bool atComment() const
    {
        return here() == '/';
    }

    std::string comment()
    {
        const bool line = m_text[m_next + 1] == '/';
        const std::size_t end = line ? m_text.find('\n', m_next) : m_text.find("*/", m_next + 2) + 2;
        std::string text(m_text.substr(m_next, end - m_next));
        m_next = std::min(end, m_text.size());
        std::erase(text, '\r');
        text.erase(text.find_last_not_of(" \t") + 1);
        return text;
    }

    // All up to what isn't one. Whether an empty line stands before that is kept in m_afterBlank.
    std::vector<Comment> comments()
    {
        std::vector<Comment> all;
        std::size_t lines = spaces();
        while (atComment()) {
            all.push_back({comment(), lines > 1});
            lines = spaces();
        }
        m_afterBlank = lines > 1;
        return all;
    }

    // What belongs to the value before it: comments that begin and end on its line.
    std::vector<std::string> commentsOnLine()
    {
        std::vector<std::string> all;
        for (std::size_t back = m_next;; back = m_next) {
            std::string text = spaces() == 0 && atComment() ? comment() : "";
            if (text.empty() || text.find('\n') != std::string::npos) {
                m_next = back;
                return all;
            }
            all.push_back(std::move(text));
        }
    }

    std::string quotedText()
    {
        const std::size_t start = m_next++;
        while (here() != '"')
            m_next += here() == '\\' ? 2U : 1U;
        ++m_next;
        return std::string(m_text.substr(start, m_next - start));
    }

    Node value()
    {
        Node node;
        if (here() == '{' || here() == '[')
            node = container();
        else if (here() == '"')
            node.text = quotedText();
        else {
            const std::size_t start = m_next;
            while (!atEnd() && std::string_view(" \t\r\n,]}/").find(here()) == std::string_view::npos)
                ++m_next;
            node.text = m_text.substr(start, m_next - start);
        }
        return node;
    }

    Node container()
    {
        Node node;
        node.open = here();
        ++m_next;
        for (;;) {
            std::vector<Comment> before = comments();
            if (here() == '}' || here() == ']') {
                node.last = std::move(before);
                ++m_next;
                return node;
            }
            node.items.push_back(item(node.open, std::move(before)));
        }
    }

    // A comment between a name and its value moves before them, one before the comma behind it.
    Node::Item item(char open, std::vector<Comment> before)
    {
        Node::Item item;
        item.afterBlank = m_afterBlank;
        item.before = std::move(before);
        const auto move = [&] {
            for (Comment& comment : comments())
                item.before.push_back({std::move(comment.text), false});
        };
        if (open == '{') {
            item.key = quotedText();
            move();
            ++m_next; // the colon
            move();
        }
        item.value = value();
        item.behind = commentsOnLine();
        const std::size_t back = m_next;
        std::vector<Comment> between = comments();
        if (here() != ',') {
            m_next = back;
            return item;
        }
        for (Comment& comment : between)
            item.before.push_back({std::move(comment.text), false});
        ++m_next;
        for (std::string& text : commentsOnLine())
            item.behind.push_back(std::move(text));
        return item;
    }

    std::string_view m_text;
    std::size_t m_next = 0;
    bool m_afterBlank = false;
    std::vector<Comment> m_end;
};

void sortBy(std::span<const std::string_view> order, Node& node)
{
    const auto rank = [&](const Node::Item& item) {
        const std::string_view name = std::string_view(item.key).substr(1, item.key.size() - 2);
        return std::find(order.begin(), order.end(), name) - order.begin();
    };
    if (node.open == '{')
        std::stable_sort(node.items.begin(), node.items.end(),
                         [&](const Node::Item& a, const Node::Item& b) { return rank(a) < rank(b); });
}

void sortDesign(Node& root)
{
    sortBy(kDesignOrder, root);
    for (Node::Item& field : root.items) {
        if (field.key == "\"groups\"") {
            for (Node::Item& group : field.value.items)
                sortBy(kGroupOrder, group.value);
        }
    }
}

class Writer {
public:
    std::string text() &&
    {
        return std::move(m_text);
    }

    void comments(const std::vector<Comment>& all, std::size_t indent, bool first)
    {
        for (const Comment& comment : all) {
            if (comment.afterBlank && !first)
                m_text += '\n';
            line(indent, comment.text);
            first = false;
        }
    }

    void item(const Node::Item& item, std::size_t indent, bool first, bool last)
    {
        comments(item.before, indent, first);
        if (item.afterBlank && (!first || !item.before.empty()))
            m_text += '\n';
        m_text.append(indent, ' ');
        std::string start = item.key.empty() ? "" : item.key + ": ";
        m_text += start;
        value(item.value, indent, width(start), last);
        m_text += last ? "" : ",";
        for (const std::string& comment : item.behind)
            m_text += " " + comment;
        m_text += '\n';
    }

private:
    static constexpr std::size_t kIndent = 2;

    void line(std::size_t indent, const std::string& text)
    {
        m_text.append(indent, ' ');
        m_text += text + '\n';
    }

    void value(const Node& node, std::size_t indent, std::size_t before, bool last)
    {
        if (node.open == '\0') {
            m_text += node.text;
            return;
        }
        const std::size_t room = indent + before + (last ? 0 : 1);
        if (std::string together; indent > 0 && oneLine(node, together) && width(together) + room <= kWidest) {
            m_text += together;
            return;
        }
        m_text += node.open;
        m_text += '\n';
        for (std::size_t i = 0; i < node.items.size(); ++i)
            item(node.items[i], indent + kIndent, i == 0, i + 1 == node.items.size());
        comments(node.last, indent + kIndent, node.items.empty());
        m_text.append(indent, ' ');
        m_text += closing(node);
    }

    static char closing(const Node& node)
    {
        return node.open == '{' ? '}' : ']';
    }

    // Whether a node may stand on one line: no comments, no list of objects, and not too long.
    static bool oneLine(const Node& node, std::string& text)
    {
        if (node.open == '\0') {
            text += node.text;
            return true;
        }
        const std::string_view space = node.open == '{' && !node.items.empty() ? " " : "";
        if (!node.last.empty())
            return false;
        text += node.open;
        text += space;
        for (const Node::Item& item : node.items) {
            const bool commented = !item.before.empty() || !item.behind.empty();
            if (commented || (node.open == '[' && item.value.open == '{'))
                return false;
            if (&item != node.items.data())
                text += ", ";
            text += item.key.empty() ? "" : item.key + ": ";
            if (!oneLine(item.value, text) || text.size() > 4 * kWidest) // bytes, of which a column has up to four
                return false;
        }
        text += space;
        text += closing(node);
        return true;
    }

    std::string m_text;
};

} // namespace

std::string formattedDesign(const std::string& text, const std::string& file)
{
    JsonSource source{file, {}, {}};
    parseJson(text, source);
    constexpr std::string_view mark = "\xef\xbb\xbf"; // which some editors put before all
    Reader reader(std::string_view(text).substr(text.starts_with(mark) ? mark.size() : 0));
    Node::Item root = reader.root();
    sortDesign(root.value);
    Writer writer;
    root.afterBlank = root.afterBlank && !root.before.empty();
    writer.item(root, 0, true, true);
    writer.comments(reader.end(), 0, false);
    return std::move(writer).text();
}

} // namespace zelm::host
