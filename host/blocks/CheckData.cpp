#include "host/blocks/CheckData.h"

#include "host/base/Terminal.h"
#include "host/base/Text.h"
#include "host/blocks/Block.h"
#include "host/blocks/DataLines.h"
#include "host/blocks/LegalWords.h"
#include "host/blocks/SharedKeys.h"

#include <fmt/format.h>

#include <map>
#include <set>

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

// Runs a block over its choices and gathers the rows that it didn't find.
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
            } catch (const std::exception& error) {
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
    RowSet m_missing;
    std::set<std::string> m_failures;
};

} // namespace

DataCheck checkData(std::chrono::milliseconds barAfter)
{
    DataCheck check;
    check.whole = true;
    std::map<std::string, RowSet> shared = rowsMissingBesideOthers();
    Progress progress("checking", blocks().size(), barAfter);
    TextTable summary({"Block", "Tables", "Rows", "Verdict"});
    for (const Block& block : blocks()) {
        std::size_t rows = 0;
        std::size_t wrong = 0;
        try {
            block.load();
            for (const ZelmTableInfo& table : block.tables)
                rows += block.keys({std::string(table.group)}, true).size();
            const Prober prober(block);
            RowSet missing = prober.missing();
            missing.merge(shared[std::string(block.name)]);
            wrong = missing.size();
            if (!missing.empty()) {
                const DataLines lines(block.dataFile());
                for (const auto& [table, key] : missing)
                    check.text += fmt::format("{}: {} has no row {}\n", lines.where(table, key), table, key);
            } else {
                for (const std::string& failure : prober.failures())
                    check.text += failure + "\n";
                wrong = prober.failures().size();
            }
        } catch (const std::exception& error) {
            check.text += fmt::format("{}\n", error.what());
            wrong = 1;
        }
        check.whole = check.whole && wrong == 0;
        summary.row({std::string(block.name), std::to_string(block.tables.size()), std::to_string(rows),
                     wrong == 0 ? "whole" : fmt::format("{} wrong", wrong)});
        progress.step();
    }
    if (!check.text.empty())
        check.text += '\n';
    check.text += summary.text();
    return check;
}

} // namespace zelm::host
