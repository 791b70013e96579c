#include "host/report/XlsxReport.h"

#include "host/base/Json.h"
#include "host/base/Workbook.h"
#include "host/estimate/Subtotals.h"
#include "host/report/Report.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>

namespace zelm::host {

namespace {

// The columns of the sheets to which others refer; a sheet's heads stand in this order.
enum GroupColumn : std::size_t { kGroup, kGroupBlock, kCount, kIn, kClock, kGroupWatts, kGroupShare, kOffChip, kRail0 };
enum RailColumn : std::size_t {
    kRailProcess,
    kRail,
    kInside,
    kVolts,
    kDynamicWatts,
    kStaticAmperes,
    kStaticWatts,
    kRailWatts,
    kRailShare,
    kDynamicAmperes,
    kRailAmperes,
    kPowerUp,
    kOwnAmperes,
    kOwnWatts
};
enum SupplyColumn : std::size_t {
    kSupplyProcess,
    kSupply,
    kFrom,
    kSupplyVolts,
    kLoadAmperes,
    kMaxAmperes,
    kMarginAmperes,
    kLoadShare,
    kSupplyPowerUp,
    kOutputWatts,
    kEfficiency,
    kInputWatts,
    kLossWatts
};
enum SummaryColumn : std::size_t { kProcess, kJunction, kDynamic, kStatic, kTotal, kSummaryOffChip, kBoardInput };

std::string range(const WorkbookSheet& sheet, std::size_t column, std::size_t first, std::size_t end)
{
    return fmt::format("{}!{}:{}", sheet.name(), cellAddress(first, column, true), cellAddress(end - 1, column, true));
}

std::string refer(const WorkbookSheet& sheet, std::size_t row, std::size_t column)
{
    return fmt::format("{}!{}", sheet.name(), cellAddress(row, column));
}

// A sum of cells of one sheet; 0 of none.
std::string sumOf(const std::vector<std::string>& terms)
{
    return terms.empty() ? "=0" : fmt::format("={}", fmt::join(terms, "+"));
}

// The share of a whole that may be 0.
std::string shareOf(const std::string& part, const std::string& whole)
{
    return fmt::format("=IF({1}=0,0,{0}/{1})", part, whole);
}

double shareOf(double part, double whole)
{
    return whole == 0.0 ? 0.0 : part / whole;
}

bool draws(const RailResult& rail)
{
    return !(rail.watts() == 0.0 && rail.amperes() == 0.0 && rail.powerUpAmperes == 0.0);
}

struct WattsAndAmperes {
    double watts = 0.0;
    double amperes = 0.0;
};

WattsAndAmperes onRail(const GroupResult& group, std::string_view rail)
{
    WattsAndAmperes sum;
    for (const Contribution& part : group.contributions) {
        if (part.rail == rail) {
            sum.watts += part.watts;
            sum.amperes += part.amperes;
        }
    }
    return sum;
}

// The efficiency of a supply as a formula of its load; empty if its curve is longer than formulas may be.
std::string efficiencyFormula(const Supply& supply, const std::string& load)
{
    constexpr std::size_t deepest = 60;
    if (supply.efficiency.empty())
        return "=1";
    if (supply.efficiency.size() > deepest)
        return {};
    const auto at = [&](std::size_t i) { return formulaNumber(supply.efficiency[i].first); };
    const auto share = [&](std::size_t i) { return formulaNumber(supply.efficiency[i].second); };
    std::string text = fmt::format("=IF({}<={},{}", load, at(0), share(0));
    for (std::size_t i = 1; i < supply.efficiency.size(); ++i)
        text += fmt::format(",IF({0}<{2},{3}+({4}-{3})*({0}-{1})/({2}-{1})", load, at(i - 1), at(i), share(i - 1),
                            share(i));
    return text + "," + share(supply.efficiency.size() - 1) + std::string(supply.efficiency.size(), ')');
}

class XlsxBook {
public:
    explicit XlsxBook(const Estimate& estimate)
        : m_estimate(estimate), m_book(estimate.design.name), m_summary(m_book.sheet("Summary")),
          m_groups(m_book.sheet("Groups")), m_currents(m_book.sheet("Currents")), m_rails(m_book.sheet("Rails"))
    {
        if (estimate.side().supplies)
            m_supplies = &m_book.sheet("Supplies");
        if (!estimate.budgets.empty())
            m_budgets = &m_book.sheet("Budgets");
        findPlaces();
    }

    std::string write()
    {
        writeSummary();
        writeGroups();
        writeCurrents();
        writeRails();
        if (m_supplies)
            writeSupplies();
        if (m_budgets)
            writeBudgets();
        writeInputs();
        return m_book.finish();
    }

private:
    const RailResult& railOf(const Side& side, const std::string& name) const
    {
        return *side.rail(name);
    }

    // Where cells will stand to which sheets before theirs refer.
    void findPlaces()
    {
        for (const RailResult& rail : m_estimate.side().rails) {
            const auto loads = [&](const GroupResult& group) {
                const WattsAndAmperes sum = onRail(group, rail.name);
                return sum.watts != 0.0 || sum.amperes != 0.0;
            };
            if (std::any_of(m_estimate.groups.begin(), m_estimate.groups.end(), loads))
                m_railColumns.emplace(rail.name, kRail0 + m_loaded.size()), m_loaded.push_back(rail.name);
        }
        m_groupsEnd = 1 + m_estimate.groups.size();
        std::size_t row = 1;
        for (const Side& side : m_estimate.sides) {
            for (const RailResult& rail : side.rails) {
                if (draws(rail))
                    m_railRows[{side.process, rail.name}] = row++;
            }
            m_railTotals[side.process] = row;
            row += 2;
        }
        row = 1;
        for (const Side& side : m_estimate.sides) {
            if (!side.supplies)
                break;
            for (const SupplyResult& supply : side.supplies->supplies)
                m_supplyRows[{side.process, supply.name}] = row++;
            m_boardRows[side.process] = row;
            row += 2;
        }
    }

    void writeFacts()
    {
        m_summary.text(0, 0, m_estimate.design.name, Look::title);
        m_summary.text(1, 0,
                       "Blue numbers come from the models, the data and the design; write over them, and the "
                       "black ones follow.");
        std::size_t column = 0;
        const auto fact = [&](const char* name, const std::string& value) {
            m_summary.text(2, column++, fmt::format("{}: {}", name, value));
        };
        if (m_estimate.design.device)
            fact("part", m_estimate.design.device->part);
        if (m_estimate.design.environment.ambient)
            fact("ambient", fmt::format("{} C", *m_estimate.design.environment.ambient));
        fact("made by", "zelm " ZELM_VERSION);
    }

    void writeSides()
    {
        std::vector<std::string> heads{"Process",   "Junction [C]", "Dynamic [W]",    "Static [W]",
                                       "Total [W]", "Off chip [W]", "Board input [W]"};
        if (!m_supplies)
            heads.pop_back();
        m_summary.heads(m_sidesRow - 1, heads);
        std::size_t row = m_sidesRow;
        for (const Side& side : m_estimate.sides) {
            m_summaryRows[side.process] = row;
            m_summary.text(row, kProcess, side.process.empty() ? "no device" : side.process);
            m_summary.number(row, kJunction, side.junction);
            m_summary.formula(row, kDynamic, "=" + refer(m_groups, m_groupsEnd, kGroupWatts), m_estimate.dynamicWatts);
            m_summary.formula(row, kStatic, "=" + refer(m_rails, m_railTotals[side.process], kStaticWatts),
                              side.staticWatts);
            m_summary.formula(row, kTotal, fmt::format("={}+{}", cellAddress(row, kDynamic), cellAddress(row, kStatic)),
                              side.totalWatts, Look::total);
            m_summary.formula(row, kSummaryOffChip, "=" + refer(m_groups, m_groupsEnd, kOffChip),
                              m_estimate.offchipWatts);
            if (side.supplies)
                m_summary.formula(row, kBoardInput, "=" + refer(*m_supplies, m_boardRows[side.process], kInputWatts),
                                  side.supplies->inputWatts);
            ++row;
        }
    }

    std::size_t writeBlocks(std::size_t row)
    {
        const std::vector<Subtotal> sums = subtotals(m_estimate, By::block);
        m_summary.heads(row++, {"Block", "Groups", "Dynamic [W]", "Share of dynamic"});
        const std::size_t first = row;
        const std::string whole = cellAddress(m_sidesRow, kDynamic, true);
        for (const Subtotal& sum : sums) {
            m_summary.text(row, 0, sum.name);
            const std::string names = range(m_groups, kGroupBlock, 1, m_groupsEnd);
            const std::string own = cellAddress(row, 0);
            m_summary.formula(row, 1, fmt::format("=COUNTIF({},{})", names, own), static_cast<double>(sum.groups),
                              Look::text);
            m_summary.formula(row, 2,
                              fmt::format("=SUMIF({},{},{})", names, own, range(m_groups, kGroupWatts, 1, m_groupsEnd)),
                              sum.watts);
            m_summary.formula(row, 3, shareOf(cellAddress(row, 2), whole), shareOf(sum.watts, m_estimate.dynamicWatts),
                              Look::share);
            ++row;
        }
        if (!sums.empty())
            m_summary.chart(first - 1, 5,
                            {WorkbookChart::Kind::bars,
                             "Dynamic power by block",
                             "W",
                             "=" + range(m_summary, 0, first, row),
                             {{"dynamic", "=" + range(m_summary, 2, first, row)}}});
        constexpr std::size_t chartRows = 17;
        return std::max(row, sums.empty() ? row : first + chartRows) + 1;
    }

    void writeSummary()
    {
        writeFacts();
        writeSides();
        std::size_t row = writeBlocks(m_sidesRow + m_estimate.sides.size() + 1);
        if (m_estimate.period)
            m_summary.text(row++, 0,
                           "The design has modes: the sheets show it without them, and budgets are judged on "
                           "the modes' worst moment.");
        for (const std::string& warning : m_estimate.warnings)
            m_summary.text(row++, 0, "warning: " + warning, Look::text);
    }

    void writeGroups()
    {
        std::vector<std::string> heads{"Group", "Block",       "Count", "In",
                                       "Clock", "Dynamic [W]", "Share", "Off chip [W]"};
        for (const std::string& rail : m_loaded)
            heads.push_back(rail + " [W]");
        m_groups.heads(0, heads);
        const std::size_t end = kRail0 + m_loaded.size();
        std::size_t row = 1;
        for (const GroupResult& group : m_estimate.groups) {
            m_groups.text(row, kGroup, group.name);
            m_groups.text(row, kGroupBlock, group.block->name);
            m_groups.number(row, kCount, group.count, Look::text);
            m_groups.text(row, kIn, group.in);
            m_groups.text(row, kClock, group.clock);
            m_groups.formula(row, kGroupWatts,
                             m_loaded.empty()
                                 ? "=0"
                                 : fmt::format("=SUM({}:{})", cellAddress(row, kRail0), cellAddress(row, end - 1)),
                             group.watts);
            m_groups.formula(row, kGroupShare,
                             shareOf(cellAddress(row, kGroupWatts), cellAddress(m_groupsEnd, kGroupWatts, true)),
                             shareOf(group.watts, m_estimate.dynamicWatts), Look::share);
            if (group.offchipWatts != 0.0)
                m_groups.number(row, kOffChip, group.offchipWatts);
            for (const auto& [rail, column] : m_railColumns) {
                if (const double watts = onRail(group, rail).watts; watts != 0.0)
                    m_groups.number(row, column, watts);
            }
            ++row;
        }
        writeTotals(m_groups, "total", false);
    }

    // The sums of a sheet that has a row per group and a column per rail.
    void writeTotals(WorkbookSheet& sheet, const char* name, bool amperes)
    {
        const std::size_t row = m_groupsEnd;
        const auto sum = [&](std::size_t column, double value) {
            sheet.formula(row, column,
                          row == 1 ? "=0"
                                   : fmt::format("=SUM({}:{})", cellAddress(1, column), cellAddress(row - 1, column)),
                          value, Look::total);
        };
        sheet.text(row, 0, name, Look::total);
        if (!amperes) {
            sum(kGroupWatts, m_estimate.dynamicWatts);
            sum(kOffChip, m_estimate.offchipWatts);
        }
        for (const auto& [rail, column] : m_railColumns) {
            const RailResult& result = railOf(m_estimate.side(), rail);
            sum(amperes ? column - kRail0 + 1 : column, amperes ? result.dynamicAmperes : result.dynamicWatts);
        }
    }

    // The volts at which a group loads a rail are the rail's, or its own.
    void writeCurrents()
    {
        std::vector<std::string> heads{"Group"};
        for (const std::string& rail : m_loaded)
            heads.push_back(rail + " [A]");
        m_currents.heads(0, heads);
        constexpr double same = 1e-9;
        std::size_t row = 1;
        for (const GroupResult& group : m_estimate.groups) {
            m_currents.text(row, 0, group.name);
            for (const auto& [rail, column] : m_railColumns) {
                const WattsAndAmperes sum = onRail(group, rail);
                if (sum.watts == 0.0 || sum.amperes == 0.0) {
                    if (sum.amperes != 0.0)
                        m_currents.number(row, column - kRail0 + 1, sum.amperes);
                    continue;
                }
                const double own = sum.watts / sum.amperes;
                const double volts = railOf(m_estimate.side(), rail).volts;
                const std::string divisor = std::fabs(own - volts) <= same * volts
                                                ? refer(m_rails, m_railRows[{m_estimate.side().process, rail}], kVolts)
                                                : formulaNumber(own);
                m_currents.formula(row, column - kRail0 + 1,
                                   fmt::format("={}/{}", refer(m_groups, row, column), divisor), sum.amperes);
            }
            ++row;
        }
        writeTotals(m_currents, "total", true);
    }

    void writeRails()
    {
        m_rails.heads(0, {"Process", "Rail", "Static inside", "Volts [V]", "Dynamic [W]", "Static [A]", "Static [W]",
                          "Total [W]", "Share of dynamic", "Dynamic [A]", "Total [A]", "Power-up [A]", "Its own [A]",
                          "Its own [W]"});
        for (const Side& side : m_estimate.sides) {
            for (const RailResult& rail : side.rails) {
                if (draws(rail))
                    writeRail(side, rail);
            }
            writeRailTotals(side);
        }
        const std::string& process = m_estimate.side().process;
        const std::size_t end = m_railTotals[process];
        if (end == 1)
            return;
        m_rails.chart(m_railTotals[m_estimate.sides.back().process] + 2, 1,
                      {WorkbookChart::Kind::stackedColumns,
                       "Power by rail " + process,
                       "W",
                       "=" + range(m_rails, kRail, 1, end),
                       {{"dynamic", "=" + range(m_rails, kDynamicWatts, 1, end)},
                        {"static", "=" + range(m_rails, kStaticWatts, 1, end)}}});
    }

    void writeRail(const Side& side, const RailResult& rail)
    {
        const std::size_t row = m_railRows[{side.process, rail.name}];
        const auto cell = [&](std::size_t column) { return cellAddress(row, column); };
        m_rails.text(row, kRailProcess, side.process);
        m_rails.text(row, kRail, rail.name);
        m_rails.text(row, kInside, rail.inside);
        const auto first = m_railRows.find({m_estimate.side().process, rail.name});
        if (&side != &m_estimate.side() && first != m_railRows.end())
            m_rails.formula(row, kVolts, "=" + cellAddress(first->second, kVolts), rail.volts);
        else
            m_rails.number(row, kVolts, rail.volts);
        const auto loaded = m_railColumns.find(rail.name);
        const bool any = loaded != m_railColumns.end();
        m_rails.formula(row, kDynamicWatts, any ? "=" + refer(m_groups, m_groupsEnd, loaded->second) : "=0",
                        rail.dynamicWatts);
        m_rails.number(row, kStaticAmperes, rail.staticAmperes);
        m_rails.formula(row, kStaticWatts, fmt::format("={}*{}", cell(kVolts), cell(kStaticAmperes)), rail.staticWatts);
        m_rails.formula(row, kRailWatts, fmt::format("={}+{}", cell(kDynamicWatts), cell(kStaticWatts)), rail.watts());
        m_rails.formula(row, kRailShare, shareOf(cell(kDynamicWatts), refer(m_groups, m_groupsEnd, kGroupWatts)),
                        shareOf(rail.dynamicWatts, m_estimate.dynamicWatts), Look::share);
        m_rails.formula(row, kDynamicAmperes,
                        any ? "=" + refer(m_currents, m_groupsEnd, loaded->second - kRail0 + 1) : "=0",
                        rail.dynamicAmperes);
        m_rails.formula(row, kRailAmperes, fmt::format("={}+{}", cell(kDynamicAmperes), cell(kStaticAmperes)),
                        rail.amperes());
        m_rails.number(row, kPowerUp, rail.powerUpAmperes);
        writeOwnLoad(side, rail, row);
    }

    // What a rail itself asks of its supply: what its static current holds of other rails is theirs.
    void writeOwnLoad(const Side& side, const RailResult& rail, std::size_t row)
    {
        std::string held;
        double own = rail.staticAmperes;
        for (const RailResult& other : side.rails) {
            if (other.inside != rail.name || !draws(other))
                continue;
            held += "-" + cellAddress(m_railRows[{side.process, other.name}], kStaticAmperes);
            own -= other.staticAmperes;
        }
        const auto cell = [&](std::size_t column) { return cellAddress(row, column); };
        m_rails.formula(row, kOwnAmperes, fmt::format("={}{}", cell(kRailAmperes), held), rail.dynamicAmperes + own);
        m_rails.formula(row, kOwnWatts,
                        fmt::format("={}+({}{})*{}", cell(kDynamicWatts), cell(kStaticAmperes), held, cell(kVolts)),
                        rail.dynamicWatts + own * rail.volts);
    }

    // A rail inside another counts with that one.
    void writeRailTotals(const Side& side)
    {
        const std::size_t row = m_railTotals[side.process];
        std::vector<std::string> statics;
        std::vector<std::string> dynamics;
        double watts = 0.0;
        for (const RailResult& rail : side.rails) {
            if (!draws(rail))
                continue;
            const std::size_t of = m_railRows[{side.process, rail.name}];
            dynamics.push_back(cellAddress(of, kDynamicWatts));
            watts += rail.dynamicWatts;
            if (rail.inside.empty())
                statics.push_back(cellAddress(of, kStaticWatts));
        }
        m_rails.text(row, kRailProcess, side.process, Look::total);
        m_rails.text(row, kRail, "total", Look::total);
        m_rails.formula(row, kDynamicWatts, sumOf(dynamics), watts, Look::total);
        m_rails.formula(row, kStaticWatts, sumOf(statics), side.staticWatts, Look::total);
        m_rails.formula(row, kRailWatts,
                        fmt::format("={}+{}", cellAddress(row, kDynamicWatts), cellAddress(row, kStaticWatts)),
                        watts + side.staticWatts, Look::total);
    }

    void writeSupplies()
    {
        m_supplies->heads(0, {"Process", "Supply", "From", "Volts [V]", "Load [A]", "Largest [A]", "Margin [A]",
                              "Load of largest", "Power-up [A]", "Output [W]", "Efficiency", "Input [W]", "Loss [W]"});
        for (const Side& side : m_estimate.sides) {
            for (std::size_t i = 0; i < side.supplies->supplies.size(); ++i)
                writeSupply(side, side.supplies->supplies[i], m_estimate.design.supplies.all[i]);
            writeBoard(side);
        }
        const std::string& process = m_estimate.side().process;
        const std::size_t end = m_boardRows[process];
        m_supplies->chart(m_boardRows[m_estimate.sides.back().process] + 3, 1,
                          {WorkbookChart::Kind::stackedColumns,
                           "Where supplies' power goes " + process,
                           "W",
                           "=" + range(*m_supplies, kSupply, 1, end),
                           {{"output", "=" + range(*m_supplies, kOutputWatts, 1, end)},
                            {"loss", "=" + range(*m_supplies, kLossWatts, 1, end)}}});
    }

    void writeSupply(const Side& side, const SupplyResult& result, const Supply& supply)
    {
        const std::size_t row = m_supplyRows[{side.process, result.name}];
        const auto cell = [&](std::size_t column) { return cellAddress(row, column); };
        std::vector<std::string> amperes;
        std::vector<std::string> watts;
        for (const auto& [rail, ofRail] : result.rails) {
            const std::size_t railRow = m_railRows[{side.process, rail}];
            amperes.push_back(refer(m_rails, railRow, kOwnAmperes));
            watts.push_back(refer(m_rails, railRow, kOwnWatts));
        }
        for (const SupplyResult& below : side.supplies->supplies) {
            if (below.from != result.name)
                continue;
            const std::string input = cellAddress(m_supplyRows[{side.process, below.name}], kInputWatts);
            amperes.push_back(fmt::format("IF({0}=0,0,{0}/{1})", input, cell(kSupplyVolts)));
            watts.push_back(input);
        }
        m_supplies->text(row, kSupplyProcess, side.process);
        m_supplies->text(row, kSupply, result.name);
        m_supplies->text(row, kFrom, result.from);
        m_supplies->number(row, kSupplyVolts, result.volts);
        m_supplies->formula(row, kLoadAmperes, sumOf(amperes), result.loadAmperes);
        if (result.maxAmperes)
            writeSupplyMargin(row, *result.maxAmperes, result.loadAmperes);
        m_supplies->number(row, kSupplyPowerUp, result.powerUpAmperes);
        m_supplies->formula(row, kOutputWatts, sumOf(watts), result.outputWatts);
        const std::string efficiency = efficiencyFormula(supply, cell(kLoadAmperes));
        if (efficiency.empty())
            m_supplies->number(row, kEfficiency, result.efficiency);
        else
            m_supplies->formula(row, kEfficiency, efficiency, result.efficiency, Look::share);
        m_supplies->formula(row, kInputWatts, fmt::format("={}/{}", cell(kOutputWatts), cell(kEfficiency)),
                            result.inputWatts);
        m_supplies->formula(row, kLossWatts, fmt::format("={}-{}", cell(kInputWatts), cell(kOutputWatts)),
                            result.lossWatts());
    }

    void writeSupplyMargin(std::size_t row, double most, double load)
    {
        const std::string limit = cellAddress(row, kMaxAmperes);
        const std::string loaded = cellAddress(row, kLoadAmperes);
        m_supplies->number(row, kMaxAmperes, most);
        m_supplies->formula(row, kMarginAmperes, fmt::format("={}-{}", limit, loaded), most - load);
        m_supplies->formula(row, kLoadShare, shareOf(loaded, limit), shareOf(load, most), Look::share);
    }

    void writeBoard(const Side& side)
    {
        const std::size_t row = m_boardRows[side.process];
        std::vector<std::string> inputs;
        for (const SupplyResult& supply : side.supplies->supplies) {
            if (!side.supplies->find(supply.from))
                inputs.push_back(cellAddress(m_supplyRows[{side.process, supply.name}], kInputWatts));
        }
        m_supplies->text(row, kSupplyProcess, side.process, Look::total);
        m_supplies->text(row, kSupply, "board input", Look::total);
        m_supplies->formula(row, kInputWatts, sumOf(inputs), side.supplies->inputWatts, Look::total);
    }

    // The cell that a budget is held against; empty for what no sheet has, such as modes' worst moments.
    std::string actualOf(const BudgetResult& budget, const std::string& process)
    {
        if (m_estimate.period)
            return {};
        const auto behind = [&](std::string_view words) { return budget.name.substr(words.size()); };
        const auto starts = [&](std::string_view words) { return budget.name.starts_with(words); };
        if (budget.name == "total power")
            return refer(m_summary, m_summaryRows[process], kTotal);
        if (budget.unit == "degrees")
            return refer(m_summary, m_summaryRows[process], kJunction);
        for (const std::string_view rail : {"current of ", "regulator of "}) {
            const auto row = starts(rail) ? m_railRows.find({process, behind(rail)}) : m_railRows.end();
            if (row != m_railRows.end())
                return refer(m_rails, row->second, kRailAmperes);
        }
        if (starts("supply "))
            return refer(*m_supplies, m_supplyRows[{process, behind("supply ")}], kLoadAmperes);
        if (starts("power-up of supply "))
            return refer(*m_supplies, m_supplyRows[{process, behind("power-up of supply ")}], kSupplyPowerUp);
        return {};
    }

    void writeBudgets()
    {
        std::vector<std::string> heads{"Budget", "Unit", "Limit", "Verdict"};
        const bool both = m_estimate.budgets.front().otherActual.has_value();
        for (std::size_t i = 0; i < (both ? 2u : 1u); ++i) {
            for (const char* const what : {"Actual", "Margin", "Used"})
                heads.push_back(fmt::format("{} {}", what, m_estimate.sides[i].process));
        }
        m_budgets->heads(0, heads);
        std::size_t row = 1;
        for (const BudgetResult& budget : m_estimate.budgets)
            writeBudget(row++, budget);
        m_budgets->chart(row + 1, 0,
                         {WorkbookChart::Kind::bars,
                          "Used of each limit",
                          "share",
                          "=" + range(*m_budgets, 0, 1, row),
                          {{"used", "=" + range(*m_budgets, 6, 1, row)}}});
    }

    void writeBudget(std::size_t row, const BudgetResult& budget)
    {
        constexpr std::size_t limitColumn = 2;
        constexpr std::size_t sideColumn = 4;
        m_budgets->text(row, 0, budget.name);
        m_budgets->text(row, 1, budget.unit == "degrees" ? "C" : budget.unit);
        m_budgets->number(row, limitColumn, budget.limit);
        const std::string limit = cellAddress(row, limitColumn);
        std::vector<std::string> kept;
        const auto side = [&](std::size_t column, const std::string& process, double actual) {
            const std::string own = cellAddress(row, column);
            const std::string of = actualOf(budget, process);
            if (of.empty())
                m_budgets->number(row, column, actual);
            else
                m_budgets->formula(row, column, "=" + of, actual);
            m_budgets->formula(row, column + 1, fmt::format("={}-{}", limit, own), budget.limit - actual);
            m_budgets->formula(row, column + 2, shareOf(own, limit), shareOf(actual, budget.limit), Look::share);
            if (budget.judgedAt.empty() || budget.judgedAt == process)
                kept.push_back(fmt::format("{}<={}", own, limit));
        };
        side(sideColumn, budget.process, budget.actual);
        if (budget.otherActual)
            side(sideColumn + 3, budget.otherProcess, *budget.otherActual);
        m_budgets->formula(row, 3,
                           fmt::format("=IFERROR(IF(AND({}),\"kept\",\"BROKEN\"),\"BROKEN\")", fmt::join(kept, ",")),
                           budget.broken() ? "BROKEN" : "kept");
    }

    void writeInputs()
    {
        WorkbookSheet& sheet = m_book.sheet("Inputs");
        sheet.heads(0, {"Group", "Block", "Input", "Value", "Unit", "Origin"});
        std::size_t row = 1;
        for (const GroupResult& group : m_estimate.groups) {
            for (const InputValue& input : group.inputs) {
                sheet.text(row, 0, group.name);
                sheet.text(row, 1, group.block->name);
                sheet.text(row, 2, input.cell);
                if (const auto* const word = std::get_if<std::string>(&input.value))
                    sheet.text(row, 3, *word);
                else if (const auto* const whole = std::get_if<int>(&input.value))
                    sheet.number(row, 3, *whole, Look::text);
                else if (const auto* const real = std::get_if<float>(&input.value))
                    sheet.number(row, 3, shortest(*real), Look::text);
                sheet.text(row, 4, input.unit);
                sheet.text(row, 5, originWord(input.origin));
                ++row;
            }
        }
    }

    using SideAndName = std::pair<std::string, std::string>;

    const Estimate& m_estimate;
    Workbook m_book;
    WorkbookSheet& m_summary;
    WorkbookSheet& m_groups;
    WorkbookSheet& m_currents;
    WorkbookSheet& m_rails;
    WorkbookSheet* m_supplies = nullptr;
    WorkbookSheet* m_budgets = nullptr;
    std::vector<std::string> m_loaded;                ///< rails that groups load
    std::map<std::string, std::size_t> m_railColumns; ///< of groups, by rail
    std::map<SideAndName, std::size_t> m_railRows;
    std::map<std::string, std::size_t> m_railTotals;
    std::map<SideAndName, std::size_t> m_supplyRows;
    std::map<std::string, std::size_t> m_boardRows;
    std::map<std::string, std::size_t> m_summaryRows;
    std::size_t m_groupsEnd = 1; ///< the row of totals
    std::size_t m_sidesRow = 5;
};

} // namespace

std::string xlsxReport(const Estimate& estimate)
{
    return XlsxBook(estimate).write();
}

} // namespace zelm::host
