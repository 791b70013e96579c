#include "host/report/ExplainReport.h"

#include "host/base/Json.h"
#include "host/base/Text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <type_traits>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace zelm::host {

namespace {

// ---- Text ----

std::string explainedValue(const ExplainedNode& node)
{
    if (const auto* amount = std::get_if<double>(&node.value))
        return amountText(*amount, node.unit);
    std::string text = "no value";
    if (const auto* whole = std::get_if<int>(&node.value))
        text = std::to_string(*whole);
    else if (const auto* real = std::get_if<float>(&node.value))
        text = exactText(*real);
    else if (const auto* words = std::get_if<std::string>(&node.value))
        text = fmt::format("\"{}\"", shown(*words));
    return node.unit.empty() || node.value.index() == 0 ? text : fmt::format("{} {}", text, node.unit);
}

std::string foundText(const ExplainedLookUp& lookUp)
{
    struct Visitor {
        std::string operator()(std::monostate) const
        {
            return "no such row";
        }
        std::string operator()(bool value) const
        {
            return value ? "true" : "false";
        }
        std::string operator()(int value) const
        {
            return std::to_string(value);
        }
        std::string operator()(float value) const
        {
            return exactText(value);
        }
        std::string operator()(const std::string& value) const
        {
            return fmt::format("\"{}\"", shown(value));
        }
    };
    return std::visit(Visitor(), lookUp.what.value);
}

std::string placeText(const std::string& file, std::size_t line)
{
    return line ? fmt::format("{}:{}", file, line) : file;
}

std::string originText(const ValueOrigin& origin)
{
    std::string text = origin.kind == "design"    ? "as the design says"
                       : origin.kind == "default" ? "by default"
                       : origin.kind == "rails"   ? "the design's rail"
                       : origin.kind == "device"  ? "the device's"
                                                  : "carried";
    if (!origin.from.empty())
        text += (origin.kind == "carried" ? " from " : ", ") + shown(origin.from);
    return origin.file.empty() ? text : fmt::format("{}, {}", text, shown(placeText(origin.file, origin.line)));
}

// A formula's lines as far left as they go.
std::vector<std::string> linesOf(const SourceText& source)
{
    std::vector<std::string> lines = split(std::string(source.text), '\n');
    std::size_t margin = std::string::npos;
    for (const std::string& line : lines)
        margin = std::min(margin, line.find_first_not_of(' '));
    for (std::string& line : lines)
        line = line.substr(std::min(margin, line.size()));
    return lines;
}

class TextTree {
public:
    TextTree(Explanation& explanation, std::size_t depth) : m_explanation(&explanation), m_depth(depth) {}

    void print(std::size_t id, std::size_t level, const ExplainedNode* above)
    {
        const std::string margin(2 * level, ' ');
        const ExplainedNode& head = m_explanation->head(id);
        const bool isNeighbour = above && above->quantity.empty() && head.quantity.empty() &&
                                 above->group == head.group && above->block == head.block;
        const std::string name = isNeighbour ? std::string(head.cell->name) : head.name();
        append("{}{} = {}{}", margin, shown(name), explainedValue(head), shareText(head, above));
        if (!m_printed.insert(id).second) {
            append("  (see above)\n");
            return;
        }
        const ExplainedNode& node = m_explanation->node(id);
        const bool isCut = level >= m_depth && !node.operands.empty();
        append("{}{}{}\n", head.meaning.empty() ? "" : "  ", head.meaning, isCut ? " ..." : "");
        if (isCut)
            return;
        printOwn(node, margin + "    ");
        for (const std::size_t operand : node.operands)
            print(operand, level + 1, &node);
    }

    std::string take() const
    {
        return fmt::to_string(m_text);
    }

private:
    // What a term makes of the sum.
    static std::string shareText(const ExplainedNode& node, const ExplainedNode* above)
    {
        const auto* whole = above && !above->terms.empty() ? std::get_if<double>(&above->value) : nullptr;
        const auto* cell = std::get_if<float>(&node.value);
        const auto* part = std::get_if<double>(&node.value);
        if (!whole || *whole == 0.0 || (!cell && !part))
            return "";
        return fmt::format(", {:.1f} %", 100.0 * (part ? *part : static_cast<double>(*cell)) / *whole);
    }

    void printOwn(const ExplainedNode& node, const std::string& margin)
    {
        if (!node.words.empty())
            append("{}= {}\n", margin, node.words);
        const bool isPlainDefault = node.origin && node.operands.empty() && node.lookUps.empty();
        if (node.formula && !isPlainDefault)
            printFormula(*node.block, *node.formula, margin);
        for (const ExplainedLookUp& lookUp : node.lookUps) {
            append("{}{}[{}] = {}{}{}  {}\n", margin, lookUp.what.table->group, shown(lookUp.what.row()),
                   foundText(lookUp), lookUp.what.table->unit.empty() ? "" : " ", lookUp.what.table->unit,
                   shown(placeText(lookUp.file, lookUp.line)));
        }
        if (node.origin)
            append("{}{}\n", margin, originText(*node.origin));
    }

    // Of functions and constants that it takes those that haven't been told yet, too.
    void printFormula(const Block& block, const Formula& formula, const std::string& margin)
    {
        if (!formula.argument.empty())
            append("{}{}({})\n", margin, formula.call, formula.argument);
        for (const SourceText& member : formula.member)
            printSource(member, margin);
        std::vector<SourceText> pieces{formula.own};
        pieces.insert(pieces.end(), formula.member.begin(), formula.member.end());
        const bool isNew = !m_sources.contains({formula.own.file, formula.own.line});
        printSource(formula.own, margin);
        if (!isNew)
            return;
        for (const SourceText& helper : helpersOf(block, pieces)) {
            if (!m_sources.contains({helper.file, helper.line}))
                printSource(helper, margin + "  ");
        }
    }

    void printSource(const SourceText& source, const std::string& margin)
    {
        const bool isNew = m_sources.emplace(source.file, source.line).second;
        append("{}{}:{}{}\n", margin, source.file, source.line, isNew ? "" : " (see above)");
        if (!isNew)
            return;
        for (const std::string& line : linesOf(source))
            append("{}|{}{}\n", margin, line.empty() ? "" : " ", line);
    }

    template <class... Parts>
    void append(fmt::format_string<Parts...> format, Parts&&... parts)
    {
        fmt::format_to(fmt::appender(m_text), format, std::forward<Parts>(parts)...);
    }

    Explanation* m_explanation;
    std::size_t m_depth;
    fmt::memory_buffer m_text;
    std::unordered_set<std::size_t> m_printed;
    std::set<std::pair<std::string_view, std::size_t>> m_sources;
};

// ---- JSON ----

void appendQuoted(std::string& out, std::string_view text)
{
    const auto isPlain = [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; };
    out += '"';
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at;
        while (end < text.size() && isPlain(text[end]))
            ++end;
        out += text.substr(at, end - at);
        at = end;
        while (end < text.size() && !isPlain(text[end]))
            ++end;
        const std::string_view special = text.substr(at, end - at);
        at = end;
        if (special == "\n") {
            out += "\\n";
        } else if (!special.empty()) {
            const std::string quoted = compactJson(special);
            out.append(quoted, 1, quoted.size() - 2);
        }
    }
    out += '"';
}

// Thousands of nodes written one after the other: as a tree in memory they would take several times longer.
class JsonTree {
public:
    JsonTree(Explanation& explanation, std::size_t depth) : m_explanation(&explanation), m_depth(depth) {}

    std::string write(std::size_t root, const std::string& name)
    {
        m_text = fmt::format("{{\"format\":{}", kJsonFormat);
        addText("name", name);
        writeNode(root, 0);
        writeSources();
        m_text += "}\n";
        return std::move(m_text);
    }

private:
    // Its fields, behind others.
    void writeNode(std::size_t id, std::size_t level)
    {
        addHead(m_explanation->head(id));
        const bool isNew = m_printed.insert(id).second;
        const ExplainedNode& node = isNew ? m_explanation->node(id) : m_explanation->head(id);
        const bool isCut = isNew && level == m_depth && !node.operands.empty();
        if (isNew)
            addOwn(node);
        else
            m_text += R"(,"repeats":true)";
        if (isCut)
            m_text += R"(,"cut":true)";
        m_text += R"(,"operands":[)";
        for (std::size_t i = 0; isNew && !isCut && i < node.operands.size(); ++i) {
            const std::size_t operand = node.operands[i];
            const auto term = std::find(node.terms.begin(), node.terms.end(), operand);
            m_text += i == 0 ? "{" : ",{";
            if (term != node.terms.end())
                addField("term", std::to_string(term - node.terms.begin()));
            writeNode(operand, level + 1);
            m_text += '}';
        }
        m_text += ']';
    }

    void addField(std::string_view name, std::string_view json)
    {
        if (m_text.back() != '{' && m_text.back() != '[')
            m_text += ',';
        m_text += '"';
        m_text += name;
        m_text += "\":";
        m_text += json;
    }

    void addText(std::string_view name, std::string_view text)
    {
        addField(name, "");
        appendQuoted(m_text, text);
    }

    template <class Number>
    void addNumberOrNull(std::string_view name, Number number, std::string_view why)
    {
        if constexpr (std::is_floating_point_v<Number>) {
            if (!std::isfinite(number)) {
                addField(name, "null");
                return addText(std::string(name) + "Reason", why.empty() ? "no finite number" : why);
            }
        }
        addField(name, fmt::format("{}", number));
    }

    // The shortest text that reads back as the same number.
    template <class Values>
    void addValueOf(const Values& value, std::string_view whyNone)
    {
        std::visit(
            [&](const auto& known) {
                using T = std::decay_t<decltype(known)>;
                if constexpr (std::is_same_v<T, std::monostate>) {
                    addField("value", "null");
                    addText("valueReason", whyNone);
                } else if constexpr (std::is_same_v<T, bool>) {
                    addField("value", known ? "true" : "false");
                } else if constexpr (std::is_same_v<T, std::string>) {
                    addText("value", known);
                } else {
                    addNumberOrNull("value", known, "");
                }
            },
            value);
    }

    void addHead(const ExplainedNode& node)
    {
        if (!node.quantity.empty()) {
            addText("quantity", node.quantity);
        } else {
            addText("cell", node.cell->name);
            addText("group", node.group);
            addText("block", node.block->name);
        }
        if (!node.process.empty())
            addText("process", node.process);
        addValueOf(node.value, node.quantity.empty() ? "unset" : "thermal runaway");
        addText("unit", node.unit);
        addText("meaning", node.meaning);
    }

    void addPlace(std::string_view file, std::size_t line)
    {
        if (!file.empty())
            addText("file", file);
        if (line)
            addField("line", std::to_string(line));
    }

    void addPiece(const SourceText& source)
    {
        m_text += m_text.back() == '[' ? "{" : ",{";
        addPlace(source.file, source.line);
        addText("text", source.text);
        m_text += '}';
    }

    void addOwn(const ExplainedNode& node)
    {
        if (!node.words.empty())
            addText("formula", node.words);
        if (node.formula)
            addFormula(*node.block, *node.formula);
        addField("lookUps", "[");
        for (const ExplainedLookUp& lookUp : node.lookUps)
            addLookUp(lookUp);
        m_text += ']';
        if (!node.origin)
            return;
        addField("origin", "{");
        addText("kind", node.origin->kind);
        if (!node.origin->from.empty())
            addText("from", node.origin->from);
        addPlace(node.origin->file, node.origin->line);
        m_text += '}';
    }

    void addFormula(const Block& block, const Formula& formula)
    {
        addText("formula", formula.own.text);
        addField("source", "{");
        addPlace(formula.own.file, formula.own.line);
        m_text += '}';
        if (!formula.argument.empty())
            addText("call", fmt::format("{}({})", formula.call, formula.argument));
        if (!formula.member.empty()) {
            addField("member", "[");
            for (const SourceText& member : formula.member)
                addPiece(member);
            m_text += ']';
        }
        std::vector<SourceText>& pieces = m_pieces[&block];
        const auto take = [&](const SourceText& piece) {
            if (m_places.emplace(piece.file, piece.line).second)
                pieces.push_back(piece);
        };
        take(formula.own);
        for (const SourceText& member : formula.member)
            take(member);
    }

    void addLookUp(const ExplainedLookUp& lookUp)
    {
        m_text += m_text.back() == '[' ? "{" : ",{";
        addText("table", lookUp.what.table->group);
        addField("keys", "[");
        for (const std::string& key : lookUp.what.keys) {
            m_text += m_text.back() == '[' ? "" : ",";
            appendQuoted(m_text, key);
        }
        m_text += ']';
        addValueOf(lookUp.what.value, "no such row");
        addText("unit", lookUp.what.table->unit);
        addPlace(lookUp.file, lookUp.line);
        m_text += '}';
    }

    // What the formulas of all nodes take beside their own lines.
    void writeSources()
    {
        addField("sources", "[");
        for (const auto& [block, pieces] : m_pieces) {
            for (const SourceText& helper : helpersOf(*block, pieces)) {
                if (m_places.emplace(helper.file, helper.line).second)
                    addPiece(helper);
            }
        }
        m_text += ']';
    }

    Explanation* m_explanation;
    std::size_t m_depth;
    std::string m_text;
    std::unordered_set<std::size_t> m_printed;
    std::set<std::pair<std::string_view, std::size_t>> m_places; // of the pieces
    std::map<const Block*, std::vector<SourceText>> m_pieces;    // formulas' own lines and members
};

// ---- For a page ----

// A list of JSON texts, each once.
class Pool {
public:
    std::size_t place(const std::string& json)
    {
        const auto [known, isNew] = m_places.try_emplace(json, m_places.size());
        if (isNew) {
            m_list += m_list.empty() ? "" : ",";
            m_list += json;
        }
        return known->second;
    }
    const std::string& list() const
    {
        return m_list;
    }

private:
    std::unordered_map<std::string, std::size_t> m_places;
    std::string m_list;
};

// Nodes level by level below the quantities, so that what is left out of a huge design lies deep.
class PageNet {
public:
    explicit PageNet(const Estimate& estimate) : m_explanation(estimate)
    {
        text(""); // the first: none
        for (const NamedQuantity& quantity : quantitiesOf(estimate))
            placeOf(m_explanation.idOf(quantity));
    }

    PageExplanations write()
    {
        constexpr std::size_t most = 20000;
        PageExplanations page;
        std::string nodes;
        for (std::size_t i = 0; i < m_ids.size(); ++i) {
            nodes += i == 0 ? "\n" : ",\n";
            nodes += nodeText(m_ids[i], m_ids.size() < most);
            page.places.emplace(m_explanation.head(m_ids[i]).name(), i);
        }
        page.json =
            fmt::format("{{\"texts\":[{}],\n\"pieces\":[{}],\n\"kinds\":[{}],\n\"rows\":[{}],\n\"nodes\":[{}]}}",
                        m_texts.list(), m_pieces.list(), m_kinds.list(), m_rows.list(), nodes);
        return page;
    }

private:
    std::size_t placeOf(std::size_t id)
    {
        const auto [known, isNew] = m_placesOfIds.try_emplace(id, m_ids.size());
        if (isNew)
            m_ids.push_back(id);
        return known->second;
    }

    std::size_t text(std::string_view words)
    {
        std::string json;
        appendQuoted(json, words);
        return m_texts.place(json);
    }

    static std::string listText(const std::vector<std::size_t>& places)
    {
        return fmt::format("[{}]", fmt::join(places, ","));
    }

    // With the places of what it takes, if that is to be told.
    std::size_t piece(const SourceText& source, const Block* takenOf = nullptr)
    {
        const std::pair<std::string_view, std::size_t> at(source.file, source.line);
        if (const auto known = m_placesOfPieces.find(at); known != m_placesOfPieces.end())
            return known->second;
        std::vector<std::size_t> taken;
        if (takenOf) {
            for (const SourceText& helper : helpersOf(*takenOf, {source}))
                taken.push_back(piece(helper));
        }
        const std::size_t place = m_pieces.place(
            fmt::format("[{},{},{},{}]", text(source.file), source.line, text(source.text), listText(taken)));
        m_placesOfPieces.emplace(at, place);
        return place;
    }

    // What cells of one name have in common, or quantities of one sort.
    std::size_t kindOf(const ExplainedNode& node)
    {
        std::vector<std::size_t> pieces;
        std::string call;
        if (node.formula) {
            pieces.push_back(piece(node.formula->own, node.block));
            for (const SourceText& member : node.formula->member)
                pieces.push_back(piece(member));
            if (!node.formula->argument.empty())
                call = fmt::format("{}({})", node.formula->call, node.formula->argument);
        }
        return m_kinds.place(fmt::format("[{},{},{},{},{}]", text(node.cell ? node.cell->name : ""), text(node.unit),
                                         text(node.meaning), text(call), listText(pieces)));
    }

    template <class Values>
    static std::string valueText(const Values& value)
    {
        return std::visit(
            [](const auto& known) -> std::string {
                using T = std::decay_t<decltype(known)>;
                std::string json = "null";
                if constexpr (std::is_same_v<T, std::string>) {
                    json.clear();
                    appendQuoted(json, known);
                } else if constexpr (std::is_floating_point_v<T>) {
                    if (std::isfinite(known))
                        json = fmt::format("{}", known);
                } else if constexpr (!std::is_same_v<T, std::monostate>) {
                    json = fmt::format("{}", known);
                }
                return json;
            },
            value);
    }

    // By the data file's name, as the page has it elsewhere: where it lies is no matter of who reads the page.
    std::size_t row(const Block& block, const ExplainedLookUp& lookUp)
    {
        const ZelmTableInfo& table = *lookUp.what.table;
        return m_rows.place(fmt::format("[{},{},{},{},{},{}]", text(table.group), text(lookUp.what.row()),
                                        valueText(lookUp.what.value), text(table.unit), text(block.dataFile()),
                                        lookUp.line));
    }

    // A node's kind, its name with a mark where the cell's goes, its value, operands (null: left out), rows, words and
    // origin.
    std::string nodeText(std::size_t id, bool whole)
    {
        const ExplainedNode& node = whole ? m_explanation.node(id) : m_explanation.head(id);
        std::vector<std::size_t> operands, rows;
        for (const std::size_t operand : node.operands)
            operands.push_back(placeOf(operand));
        for (const ExplainedLookUp& lookUp : node.lookUps)
            rows.push_back(row(*node.block, lookUp));
        const std::string name = !node.quantity.empty()  ? node.quantity
                                 : !node.process.empty() ? fmt::format("static.\1@{}", node.process)
                                                         : fmt::format("group:{}.\1", node.group);
        std::string origin;
        if (node.origin)
            origin = fmt::format(",[{},{},{},{}]", text(node.origin->kind), text(node.origin->from),
                                 text(node.origin->file), node.origin->line);
        return fmt::format("[{},{},{},{},{},{}{}]", kindOf(node), text(name), valueText(node.value),
                           whole ? listText(operands) : "null", listText(rows), text(node.words), origin);
    }

    Explanation m_explanation;
    std::vector<std::size_t> m_ids; // of the nodes, by place
    std::unordered_map<std::size_t, std::size_t> m_placesOfIds;
    std::map<std::pair<std::string_view, std::size_t>, std::size_t> m_placesOfPieces;
    Pool m_texts;
    Pool m_pieces;
    Pool m_kinds;
    Pool m_rows;
};

} // namespace

std::string explanationText(Explanation& explanation, std::size_t root, std::size_t depth)
{
    TextTree tree(explanation, depth);
    tree.print(root, 0, nullptr);
    return tree.take();
}

std::string explanationJson(Explanation& explanation, std::size_t root, std::size_t depth, const std::string& name)
{
    return JsonTree(explanation, depth).write(root, name);
}

PageExplanations explanationsForPage(const Estimate& estimate)
{
    return PageNet(estimate).write();
}

} // namespace zelm::host
