#include "host/report/HtmlNumbers.h"
#include "host/report/HtmlPage.h"
#include "host/report/HtmlSection.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace zelm::host {

namespace {

std::string durationText(double seconds)
{
    constexpr double hour = 3600.0;
    return seconds >= hour ? fmt::format("{:.1f} h", seconds / hour) : htmlAmount(seconds, "s");
}

class SuppliesSection : private HtmlSection {
public:
    using HtmlSection::HtmlSection;

    std::string html() const
    {
        std::vector<double> currents, powers;
        for (const Side& side : m_estimate->sides) {
            for (const SupplyResult& supply : side.supplies->supplies) {
                currents.insert(currents.end(),
                                {supply.loadAmperes, supply.maxAmperes.value_or(0.0), supply.powerUpAmperes});
                powers.push_back(supply.inputWatts);
            }
        }
        const HtmlScale amperes(currents, "A"), watts(powers, "W");
        HtmlTable table{"Supplies",
                        {{"Supply", "t"},
                         {"From", "t"},
                         {"Process", "t"},
                         {"Verdict", "t v"},
                         {"Volts"},
                         {"Load, " + amperes.unit()},
                         {"Limit, " + amperes.unit()},
                         {"Margin, " + amperes.unit()},
                         {"Power-up, " + amperes.unit()},
                         {"Efficiency"},
                         {"Loss, " + watts.unit()},
                         {"Input, " + watts.unit()}}};
        for (std::size_t i = 0; i < m_side->supplies->supplies.size(); ++i) {
            for (const Side& side : m_estimate->sides)
                table.rows.push_back({supplyCells(side.supplies->supplies[i], side, amperes, watts)});
        }
        std::string notes;
        for (const Side& side : m_estimate->sides) {
            const SupplyTree& tree = *side.supplies;
            table.rows.push_back({{"Board input", "", htmlText(side.process), "", "", "", "", "", "", "", "",
                                   watts.text(tree.inputWatts)}});
            if (!tree.unfed.empty())
                notes +=
                    htmlAside(htmlText(fmt::format("{}no supply feeds {}: {} that the board’s input doesn’t count.",
                                                   side.process.empty() ? "" : side.process + ": ",
                                                   fmt::join(tree.unfed, ", "), htmlAmount(tree.unfedWatts, "W"))));
        }
        return htmlCharts("supplies") + table.html() + notes;
    }

private:
    std::string verdictOfSupply(const SupplyResult& supply) const
    {
        const BudgetResult* load = m_estimate->budget("supply " + supply.name);
        const BudgetResult* powerUp = m_estimate->budget("power-up of supply " + supply.name);
        const BudgetResult* said = powerUp && (!load || (powerUp->broken() && !load->broken())) ? powerUp : load;
        return said ? verdictOf(*said) : "";
    }

    HtmlCells supplyCells(const SupplyResult& supply, const Side& side, const HtmlScale& amperes,
                          const HtmlScale& watts) const
    {
        const bool isFirst = &side == m_side;
        const double most = supply.maxAmperes.value_or(kUnknown);
        return {htmlRowName(supply.name, !isFirst),
                isFirst ? htmlText(supply.from) : "",
                htmlText(side.process),
                isFirst ? verdictOfSupply(supply) : "",
                htmlFixed(supply.volts, kLimitDecimals),
                amperes.text(supply.loadAmperes),
                amperes.text(most),
                amperes.text(most - supply.loadAmperes),
                amperes.text(supply.powerUpAmperes),
                htmlShare(supply.efficiency, 1.0),
                watts.text(supply.lossWatts()),
                watts.text(supply.inputWatts)};
    }
};

class ModesSection : private HtmlSection {
public:
    using HtmlSection::HtmlSection;

    std::string html() const
    {
        const Period& period = *m_estimate->period;
        std::string text = modeTable(period);
        std::vector<const PeriodSide*> settled;
        for (const PeriodSide& side : period.sides) {
            text += periodWords(side);
            if (side.settles)
                settled.push_back(&side);
        }
        std::string more = htmlCharts("modes");
        if (!settled.empty())
            more += railsOverModes(settled);
        if (!settled.empty() && m_side->supplies)
            more += suppliesOverModes(settled);
        return text + htmlDetail(more + groupsOverModes(period));
    }

private:
    // In watt-hours from ten of them on.
    struct Energy {
        double divisor = 1.0;
        HtmlScale scale;

        std::string text(double joules) const
        {
            return scale.text(joules / divisor);
        }
    };

    static Energy energyOf(const Period& period)
    {
        constexpr double hour = 3600.0;
        constexpr double many = 10.0;
        const bool inHours = std::any_of(period.sides.begin(), period.sides.end(),
                                         [](const PeriodSide& side) { return side.joules >= many * hour; });
        const double divisor = inHours ? hour : 1.0;
        std::vector<double> energies;
        for (const PeriodSide& side : period.sides)
            energies.push_back(side.joules / divisor);
        return {divisor, HtmlScale(energies, inHours ? "Wh" : "J")};
    }

    static std::string modeTable(const Period& period)
    {
        std::vector<double> powers;
        for (const ModeResult& mode : period.modes) {
            powers.push_back(mode.dynamicWatts);
            for (const ModeSide& side : mode.sides)
                powers.push_back(side.peakWatts);
        }
        const HtmlScale watts(powers, "W");
        const Energy energy = energyOf(period);
        HtmlTable table{"Modes and their period",
                        {{"Mode", "t"},
                         {"Lasts"},
                         {"Process", "t"},
                         {"Dynamic, " + watts.unit()},
                         {"Static, " + watts.unit()},
                         {"Total, " + watts.unit()},
                         {"Peak, " + watts.unit()},
                         {"Energy, " + energy.scale.unit()},
                         {"Lowest, °C"},
                         {"Highest, °C"}}};
        for (const ModeResult& mode : period.modes) {
            for (std::size_t i = 0; i < mode.sides.size(); ++i) {
                const ModeSide& side = mode.sides[i];
                table.rows.push_back(
                    {{htmlRowName(mode.name, i > 0), i == 0 ? durationText(mode.seconds) : "",
                      htmlText(period.sides[i].process), watts.text(mode.dynamicWatts), watts.text(side.staticWatts),
                      watts.text(side.watts), watts.text(side.peakWatts), energy.text(side.joules),
                      htmlFixed(side.lowestJunction, 2), htmlFixed(side.highestJunction, 2)}});
            }
        }
        for (const PeriodSide& side : period.sides)
            table.rows.push_back({{"Period", durationText(period.seconds), htmlText(side.process), "", "",
                                   watts.text(side.watts), watts.text(side.peakWatts), energy.text(side.joules),
                                   htmlFixed(side.lowest.junction, 2), htmlFixed(side.highest.junction, 2)}});
        return table.html();
    }

    std::string periodWords(const PeriodSide& side) const
    {
        std::string words = (side.process.empty() ? "" : side.process + ": ") + side.words;
        if (side.settles && m_side->supplies)
            words += fmt::format("; the board takes {} on average, {} at most", htmlAmount(side.inputWatts, "W"),
                                 htmlAmount(side.peakInputWatts, "W"));
        if (side.settles && side.batteryHours)
            words += fmt::format("; the battery lasts {:.3g} hours", *side.batteryHours);
        return htmlAside(htmlText(words + "."));
    }

    std::string groupsOverModes(const Period& period) const
    {
        std::vector<double> powers;
        for (const ModeResult& mode : period.modes)
            powers.insert(powers.end(), mode.groupWatts.begin(), mode.groupWatts.end());
        const HtmlScale watts(powers, "W");
        HtmlTable table{"Groups over the modes", {{"Group", "t"}}};
        for (const ModeResult& mode : period.modes)
            table.columns.push_back({fmt::format("{}, {}", mode.name, watts.unit())});
        for (std::size_t i = 0; i < m_estimate->groups.size(); ++i) {
            HtmlCells cells{htmlText(m_estimate->groups[i].name)};
            bool draws = false;
            for (const ModeResult& mode : period.modes) {
                cells.push_back(watts.text(mode.groupWatts[i]));
                draws = draws || mode.groupWatts[i] != 0.0;
            }
            if (draws)
                table.rows.push_back({std::move(cells)});
        }
        table.kind = "sortable";
        return table.rows.empty() ? "" : table.html();
    }

    static std::string railsOverModes(const std::vector<const PeriodSide*>& settled)
    {
        std::vector<double> currents, powers;
        for (const PeriodSide* side : settled) {
            for (const RailPeriod& rail : side->rails) {
                currents.push_back(rail.peakAmperes);
                powers.push_back(rail.peakWatts);
            }
        }
        const HtmlScale amperes(currents, "A"), watts(powers, "W");
        HtmlTable table{"Rails over the modes",
                        {{"Rail", "t"},
                         {"Average, " + watts.unit()},
                         {"Peak, " + watts.unit()},
                         {"Peak, " + amperes.unit()},
                         {"In mode", "t"}}};
        for (std::size_t i = 1; i < settled.size(); ++i) {
            table.columns.push_back({fmt::format("Average at {}, {}", settled[i]->process, watts.unit())});
            table.columns.push_back({fmt::format("Peak at {}, {}", settled[i]->process, watts.unit())});
        }
        for (const RailPeriod& rail : settled.front()->rails) {
            if (rail.peakAmperes == 0.0)
                continue;
            HtmlCells cells{htmlText(rail.rail), watts.text(rail.watts), watts.text(rail.peakWatts),
                            amperes.text(rail.peakAmperes), htmlText(rail.peakMode)};
            for (std::size_t i = 1; i < settled.size(); ++i) {
                const std::vector<RailPeriod>& there = settled[i]->rails;
                const auto same =
                    std::find_if(there.begin(), there.end(), [&](const auto& one) { return one.rail == rail.rail; });
                appendCells(cells, same == there.end()
                                       ? HtmlCells{"", ""}
                                       : HtmlCells{watts.text(same->watts), watts.text(same->peakWatts)});
            }
            table.rows.push_back({std::move(cells)});
        }
        return table.html();
    }

    static std::string suppliesOverModes(const std::vector<const PeriodSide*>& settled)
    {
        std::vector<double> currents, powers;
        for (const PeriodSide* side : settled) {
            for (const SupplyPeriod& supply : side->supplies) {
                currents.insert(currents.end(), {supply.peakAmperes, supply.maxAmperes.value_or(0.0)});
                powers.push_back(supply.peakInputWatts);
            }
        }
        const HtmlScale amperes(currents, "A"), watts(powers, "W");
        HtmlTable table{"Supplies over the modes",
                        {{"Supply", "t"},
                         {"Process", "t"},
                         {"Peak load, " + amperes.unit()},
                         {"In mode", "t"},
                         {"Limit, " + amperes.unit()},
                         {"Power-up, " + amperes.unit()},
                         {"Average input, " + watts.unit()},
                         {"Peak input, " + watts.unit()}}};
        for (std::size_t i = 0; i < settled.front()->supplies.size(); ++i) {
            for (const PeriodSide* side : settled) {
                const SupplyPeriod& supply = side->supplies[i];
                table.rows.push_back(
                    {{htmlRowName(supply.name, side != settled.front()), htmlText(side->process),
                      amperes.text(supply.peakAmperes), htmlText(supply.peakMode),
                      amperes.text(supply.maxAmperes.value_or(kUnknown)), amperes.text(supply.powerUpAmperes),
                      watts.text(supply.inputWatts), watts.text(supply.peakInputWatts)}});
            }
        }
        return table.html();
    }
};

} // namespace

std::string htmlSupplies(const Estimate& estimate, const PageExplanations& told)
{
    return SuppliesSection(estimate, told).html();
}

std::string htmlModes(const Estimate& estimate, const PageExplanations& told)
{
    return ModesSection(estimate, told).html();
}

std::string htmlStartUp(const Estimate& estimate)
{
    std::string tables;
    for (const Side& side : estimate.sides) {
        HtmlTable table{fmt::format("Junction from ambient, process {}", side.process),
                        {{"After"}, {"Lowest, °C"}, {"Highest, °C"}}};
        for (const WarmingUp& stretch : side.startUp)
            table.rows.push_back({{htmlAmount(stretch.seconds, "s"), htmlFixed(stretch.lowestJunction, 2),
                                   htmlFixed(stretch.highestJunction, 2)}});
        if (!table.rows.empty())
            tables += table.html();
    }
    return tables.empty() ? "" : htmlCharts("startup") + htmlFolded("The start-up in numbers", tables);
}

} // namespace zelm::host
