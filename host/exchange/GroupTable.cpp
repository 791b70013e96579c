#include "host/exchange/GroupTable.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/base/Units.h"
#include "host/base/Workbook.h"
#include "host/design/Format.h"
#include "host/design/Sections.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <map>
#include <set>

namespace zelm::host {

namespace {

constexpr std::array<std::string_view, 5> kGroupFields{"block", "name", "count", "in", "clock"};

bool isGroupField(std::string_view head)
{
    return std::find(kGroupFields.begin(), kGroupFields.end(), head) != kGroupFields.end();
}

// The inputs of all blocks that may stand in a design, and a group's own fields.
const std::set<std::string>& knownHeads()
{
    static const std::set<std::string> known = [] {
        std::set<std::string> names(kGroupFields.begin(), kGroupFields.end());
        for (const Block& block : blocks()) {
            for (const ZelmCellInfo& cell : block.cells) {
                if (cell.kind == ZelmCellInfo::Kind::userInput)
                    names.emplace(cell.name);
            }
        }
        return names;
    }();
    return known;
}

Json numberOrText(const std::string& text)
{
    constexpr double exact = 1e15;
    const std::optional<double> number = plainNumber(text);
    if (!number)
        return text;
    if (*number == std::floor(*number) && std::fabs(*number) < exact)
        return static_cast<std::int64_t>(*number);
    return *number;
}

// Whether an input of a block's groups is a word, whatever it looks like.
bool isWord(const std::string& blockName, const std::string& input)
{
    const auto known =
        std::find_if(blocks().begin(), blocks().end(), [&](const Block& b) { return b.name == blockName; });
    if (known == blocks().end())
        return false;
    for (const Block* block : inputBlocks(*known)) {
        if (const ZelmCellInfo* cell = block->findCell(input))
            return cell->type == ZelmCellInfo::Type::text;
    }
    return false;
}

class GroupRows {
public:
    explicit GroupRows(const SheetTable& table) : m_table(&table)
    {
        if (table.rows.empty())
            throw Error(fmt::format("{}: has no row; the first one has the heads: {}, and names of inputs",
                                    shown(table.file), fmt::join(kGroupFields, ", ")));
        readHeads(table.rows.front());
        m_reading.source.file = table.file;
    }

    TableDesign read()
    {
        for (std::size_t i = 1; i < m_table->rows.size(); ++i)
            readRow(m_table->rows[i], i - 1);
        refuseUnknownClocks();
        const std::string name = std::filesystem::path(m_table->file).stem().string();
        const Json design{{"name", validUtf8(name)}, {"groups", std::move(m_groups)}};
        m_result.text = formattedDesign(jsonText(design), m_table->file);
        m_result.groups = m_read.size();
        return std::move(m_result);
    }

private:
    [[noreturn]] void fail(const TableRow& row, std::size_t column, const std::string& message) const
    {
        throw Error(fmt::format("{}: {}", m_table->at(row, column, headOf(column)), message));
    }

    std::string headOf(std::size_t column) const
    {
        const auto found = m_heads.find(column);
        return found == m_heads.end() ? std::string() : found->second;
    }

    void readHeads(const TableRow& row)
    {
        std::set<std::string> seen;
        for (const TableCell& cell : row.cells) {
            if (!knownHeads().contains(cell.text))
                fail(row, cell.column,
                     fmt::format("no block has an input {}{}", abbreviated(cell.text),
                                 suggestion(cell.text, {knownHeads().begin(), knownHeads().end()})));
            if (!seen.insert(cell.text).second)
                fail(row, cell.column, fmt::format("{} is the head of an earlier column, too", cell.text));
            m_heads[cell.column] = cell.text;
        }
        if (!seen.contains("block"))
            throw Error(fmt::format("{}: there is no column \"block\"; the first row has the heads: {}, and names of "
                                    "inputs",
                                    m_table->at(row), fmt::join(kGroupFields, ", ")));
    }

    void readRow(const TableRow& row, std::size_t index)
    {
        Json group = Json::object();
        std::string blockName;
        for (const TableCell& cell : row.cells) {
            if (headOf(cell.column) == "block")
                blockName = cell.text;
        }
        Json inputs = Json::object();
        for (const TableCell& cell : row.cells) {
            const std::string head = headOf(cell.column);
            if (head.empty())
                fail(row, cell.column, fmt::format("{} stands in a column without a head", abbreviated(cell.text)));
            const bool word = isGroupField(head) ? head != "count" : isWord(blockName, head);
            (isGroupField(head) ? group : inputs)[head] = word ? Json(cell.text) : numberOrText(cell.text);
        }
        if (!inputs.empty())
            group["inputs"] = std::move(inputs);
        Group read = checked(group, row, index);
        const auto [same, isNew] = m_names.emplace(read.name, row.number);
        if (!isNew)
            throw Error(fmt::format("{}: two groups are named \"{}\", here and in row {}; give each its own name",
                                    m_table->at(row), abbreviated(read.name), same->second));
        for (const std::string& warning : read.warnings)
            m_result.warnings.push_back(inTable(warning, row, index));
        m_read.emplace_back(&row, std::move(read));
        m_groups.push_back(std::move(group));
    }

    Group checked(const Json& group, const TableRow& row, std::size_t index)
    {
        try {
            return readGroup(group, index, m_reading);
        } catch (const Error& error) {
            throw Error(inTable(error.what(), row, index));
        }
    }

    // What is said of a field of a design, said of the cell of the table.
    std::string inTable(const std::string& message, const TableRow& row, std::size_t index) const
    {
        const std::string group = fmt::format("groups[{}]", index);
        for (const auto& [column, head] : m_heads) {
            const std::string path = fmt::format("{}.{}{}", group, isGroupField(head) ? "" : "inputs.", head);
            const std::string lead = m_reading.source.at(path) + ": ";
            if (message.starts_with(lead))
                return fmt::format("{}: {}", m_table->at(row, column, head), message.substr(lead.size()));
        }
        const std::string lead = m_reading.source.at(group) + ": ";
        return message.starts_with(lead) ? fmt::format("{}: {}", m_table->at(row), message.substr(lead.size()))
                                         : fmt::format("{}: {}", m_table->at(row), message);
    }

    void refuseUnknownClocks() const
    {
        std::vector<std::string> clocks;
        for (const auto& [row, group] : m_read) {
            if (group.block->name == "Clock")
                clocks.push_back(group.name);
        }
        for (const auto& [row, group] : m_read) {
            if (!group.clock.empty() && std::find(clocks.begin(), clocks.end(), group.clock) == clocks.end())
                throw Error(fmt::format("{}: no group of Clock is named \"{}\"{}", m_table->at(*row),
                                        abbreviated(group.clock), suggestion(group.clock, clocks)));
        }
    }

    const SheetTable* m_table;
    std::map<std::size_t, std::string> m_heads; ///< by column
    Reading m_reading{};
    std::map<std::string, std::size_t> m_names; ///< the row that has it
    std::vector<std::pair<const TableRow*, Group>> m_read;
    Json m_groups = Json::array();
    TableDesign m_result;
};

// The heads of a table of a design's groups, inputs as they first occur.
std::vector<std::string> headsOf(const Design& design)
{
    std::vector<std::string> heads(kGroupFields.begin(), kGroupFields.end());
    std::set<std::string> seen;
    for (const Group& group : design.groups) {
        for (const auto& input : group.inputs) {
            if (seen.insert(input.first).second)
                heads.push_back(input.first);
        }
    }
    return heads;
}

// A group's cell in a column; nothing if it sets no such input.
Value valueUnder(const Group& group, const std::string& head)
{
    if (head == "block")
        return std::string(group.block->name);
    if (head == "name")
        return group.name;
    if (head == "count")
        return group.count;
    if (head == "in")
        return group.in;
    if (head == "clock")
        return group.clock;
    const Value* const value = group.input(head);
    return value ? *value : Value();
}

std::string tableText(const Value& value)
{
    if (const auto* const word = std::get_if<std::string>(&value))
        return *word;
    if (const auto* const whole = std::get_if<int>(&value))
        return fmt::format("{}", *whole);
    const auto* const real = std::get_if<float>(&value);
    return real ? exactText(*real) : std::string();
}

} // namespace

TableDesign designOfTable(const SheetTable& table)
{
    return GroupRows(table).read();
}

std::string groupsAsCsv(const Design& design)
{
    const std::vector<std::string> heads = headsOf(design);
    std::string text = fmt::format("{}\n", fmt::join(heads, ","));
    for (const Group& group : design.groups) {
        std::vector<std::string> fields;
        for (const std::string& head : heads)
            fields.push_back(escapedCsv(tableText(valueUnder(group, head))));
        text += fmt::format("{}\n", fmt::join(fields, ","));
    }
    return text;
}

std::string groupsAsXlsx(const Design& design)
{
    Workbook book(design.name);
    WorkbookSheet& sheet = book.sheet("Groups");
    const std::vector<std::string> heads = headsOf(design);
    sheet.heads(0, heads);
    for (std::size_t row = 0; row < design.groups.size(); ++row) {
        for (std::size_t column = 0; column < heads.size(); ++column) {
            const Value value = valueUnder(design.groups[row], heads[column]);
            if (const auto* const whole = std::get_if<int>(&value))
                sheet.number(row + 1, column, *whole, Look::text);
            else if (const auto* const real = std::get_if<float>(&value))
                sheet.number(row + 1, column, shortest(*real), Look::text);
            else if (const auto* const word = std::get_if<std::string>(&value))
                sheet.text(row + 1, column, *word);
        }
    }
    return book.finish();
}

} // namespace zelm::host
