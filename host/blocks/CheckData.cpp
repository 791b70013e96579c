#include "host/blocks/CheckData.h"

#include "host/base/Error.h"
#include "host/base/Terminal.h"
#include "host/base/Text.h"
#include "host/blocks/Block.h"
#include "host/blocks/CheckRows.h"
#include "host/blocks/DataLines.h"
#include "host/blocks/LegalWords.h"
#include "host/blocks/SharedKeys.h"

#include <fmt/format.h>

#include <cstdint>
#include <map>
#include <set>
#include <unordered_set>

namespace zelm::host {

namespace {

struct Choice {
    const ZelmCellInfo* cell;
    std::vector<Value> values;
};

std::vector<Choice> choicesOf(const Block& block)
{
    std::vector<Choice> choices;
    for (const ZelmCellInfo& cell : block.cells) {
        if (cell.kind != ZelmCellInfo::Kind::userInput)
            continue;
        std::vector<Value> values = legalValues(block, cell);
        if (!values.empty())
            choices.push_back({&cell, std::move(values)});
    }
    return choices;
}

// The rows that formulas ask for.
class AskedRows final : public Watcher {
public:
    AskedRows() : Watcher(Wants::pulls) {}
    AskedRows(const AskedRows&) = delete;
    AskedRows& operator=(const AskedRows&) = delete;

    const RowSet& rows() const
    {
        return m_rows;
    }

    void onLookUp(const LookUp& lookUp) override
    {
        std::uint64_t hash = std::hash<const void*>()(&lookUp.table);
        for (const Key& key : lookUp.keys)
            hash = hash * Key::base + key.hash();
        if (!m_seen.insert(hash).second)
            return;
        std::string joined;
        for (const Key& key : lookUp.keys) {
            if (!key.empty())
                joined.append(joined.empty() ? "" : ".").append(key.text());
        }
        m_rows.emplace(lookUp.table.group, std::move(joined));
    }

private:
    std::unordered_set<std::uint64_t> m_seen; // formulas ask for the same again and again
    RowSet m_rows;
    Watching m_watching{*this};
};

// Runs a block over its choices and gathers the rows that it asks for, and those of them that it doesn't find.
class Prober {
public:
    explicit Prober(const Block& block) : m_block(block), m_choices(choicesOf(block))
    {
        // Also cells that a calculation leaves out, limits, say, that hosts pull: with all combinations if that is
        // cheap, else once for each word.
        constexpr double affordablePulls = 200000.0;
        const auto [depth, combinations] = affordableDepth();
        const bool everyCell = combinations * static_cast<double>(block.cells.size()) <= affordablePulls;
        if (!everyCell)
            combine(1, 0, {}, true);
        combine(depth, 0, {}, everyCell);
    }

    const RowSet& missing() const
    {
        return m_missing;
    }

    const RowSet& asked() const
    {
        return m_asked.rows();
    }

    // What formulas threw: text in a row, say, where they need a number.
    const std::set<std::string>& failures() const
    {
        return m_failures;
    }

private:
    using Setting = std::pair<const ZelmCellInfo*, const Value*>;

    // How many choices to vary together: all where there are few combinations, else less: keys join a few words each.
    // And the number of combinations.
    std::pair<std::size_t, double> affordableDepth() const
    {
        constexpr double affordable = 5000.0;
        std::vector<double> combinations(m_choices.size() + 1, 0.0); // by the number of choices that vary
        combinations[0] = 1.0;
        for (const Choice& choice : m_choices) {
            for (std::size_t depth = m_choices.size(); depth > 0; --depth)
                combinations[depth] += combinations[depth - 1] * static_cast<double>(choice.values.size());
        }
        std::size_t depth = m_choices.size();
        while (depth > 1 && combinations[depth] > affordable)
            --depth;
        return {depth, combinations[depth]};
    }

    // Probes every setting of every `depth` choices from the one at `first` on.
    void combine(std::size_t depth, std::size_t first, const std::vector<Setting>& settings, bool everyCell)
    {
        if (depth == 0 || m_choices.empty()) {
            probe(settings, everyCell);
            return;
        }
        for (std::size_t i = first; i + depth <= m_choices.size(); ++i) {
            std::vector<Setting> more = settings;
            more.emplace_back();
            for (const Value& value : m_choices[i].values) {
                more.back() = {m_choices[i].cell, &value};
                combine(depth - 1, i + 1, more, everyCell);
            }
        }
    }

    void probe(const std::vector<Setting>& settings, bool everyCell)
    {
        const auto instance = m_block.create();
        for (const auto& [cell, value] : settings)
            instance->set(*cell, *value);
        const LookUpMisses misses;
        const auto attempt = [&](auto run) {
            try {
                run();
            } catch (const Error& error) {
                m_failures.insert(error.what());
            }
        };
        attempt([&] { instance->calculate(); });
        if (everyCell) {
            for (const ZelmCellInfo& cell : m_block.cells)
                attempt([&] { instance->pull(cell); });
        }
        for (MissingRow& row : m_block.missingRows(misses)) {
            if (!isMeantToMiss(m_block, row))
                m_missing.emplace(std::move(row.table), std::move(row.key));
        }
    }

    const Block& m_block;
    std::vector<Choice> m_choices;
    AskedRows m_asked;
    RowSet m_missing;
    std::set<std::string> m_failures;
};

struct BlockCheck {
    std::vector<std::string> faults;
    std::vector<DataRow> untold;
    std::size_t rows = 0; ///< none of a block that can't be loaded
};

// A block that can't be loaded: why, and whether that comes from its rows.
BlockCheck checkUnloadable(const Block& block, const std::string& reason)
{
    BlockCheck check{{reason}, {}, 0};
    try {
        const RowCheck rows = checkRows(block, DataLines(block.dataFile()), nullptr);
        check.faults.insert(check.faults.end(), rows.faults.begin(), rows.faults.end());
    } catch (const Error&) { // it can't even be read, as the reason says
    }
    return check;
}

BlockCheck checkBlock(const Block& block, RowSet missingBesideOthers)
{
    try {
        block.load();
    } catch (const Error& error) {
        return checkUnloadable(block, error.what());
    }
    const DataLines lines(block.dataFile());
    const Prober prober(block);
    RowCheck rows = checkRows(block, lines, &prober.asked());
    RowSet missing = prober.missing();
    missing.merge(missingBesideOthers);
    for (const auto& [table, key] : missing) {
        if (!rows.faulty.contains({table, key})) // it is there, but of no use
            rows.faults.push_back(fmt::format("{}: {} has no row {}", lines.where(table, key), table, key));
    }
    if (rows.faults.empty())
        rows.faults.insert(rows.faults.end(), prober.failures().begin(), prober.failures().end());
    BlockCheck check{std::move(rows.faults), std::move(rows.untold), 0};
    for (const ZelmTableInfo& table : block.tables)
        check.rows += block.keys({std::string(table.group)}, true).size();
    return check;
}

// The tables with rows that nobody would notice to be missing, and the last names of those, unless they are many.
void listUntold(const Block& block, const std::vector<DataRow>& untold, TextTable& list)
{
    std::map<std::string, std::pair<std::size_t, std::set<std::string>>> tables;
    for (const DataRow& row : untold) {
        auto& [count, names] = tables[row.table];
        ++count;
        names.insert(row.key.substr(row.key.rfind('.') + 1));
    }
    constexpr std::size_t few = 10;
    for (auto& [table, rows] : tables) {
        if (rows.second.size() > few)
            rows.second = {"many"};
        list.row({std::string(block.name), table, std::to_string(rows.first),
                  fmt::format("{}", fmt::join(rows.second, ", "))});
    }
}

} // namespace

DataCheck checkData(std::chrono::milliseconds barAfter)
{
    DataCheck check;
    check.whole = true;
    std::map<std::string, RowSet> shared = rowsMissingBesideOthers();
    Progress progress("checking", blocks().size(), barAfter);
    TextTable summary({"Block", "Tables", "Rows", "Verdict"});
    TextTable untold({"Block", "Table", "Rows", "Names"});
    for (const Block& block : blocks()) {
        BlockCheck found;
        try {
            found = checkBlock(block, shared[std::string(block.name)]);
        } catch (const Error& error) {
            found.faults.emplace_back(error.what());
        }
        for (const std::string& fault : found.faults)
            check.text += fault + '\n';
        listUntold(block, found.untold, untold);
        check.whole = check.whole && found.faults.empty();
        summary.row({std::string(block.name), std::to_string(block.tables.size()), std::to_string(found.rows),
                     found.faults.empty() ? "whole" : fmt::format("{} wrong", found.faults.size())});
        progress.step();
    }
    if (!check.text.empty())
        check.text += '\n';
    check.text += summary.text();
    check.text += "\nRows whose absence can't be told: no formula asks for them, or may do without\n";
    check.text += untold.text();
    return check;
}

} // namespace zelm::host
