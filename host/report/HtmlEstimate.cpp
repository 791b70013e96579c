#include "host/report/HtmlEstimate.h"

#include "host/base/Text.h"
#include "host/estimate/Subtotals.h"
#include "host/report/HtmlNumbers.h"
#include "host/report/HtmlPage.h"
#include "host/report/HtmlSection.h"
#include "host/study/StudyIdentity.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <utility>

namespace zelm::host {

namespace {

constexpr double kSmall = 0.01; // of the total: the printed summary leaves it out

constexpr const char* kSmallNote =
    "<p class=\"soft brief\">What draws less than 1 % of the total is left out of this summary.</p>\n";

bool isOfRegulator(const BudgetResult& budget)
{
    return budget.name.starts_with("regulator of ");
}

// The report of one estimate, section by section.
class EstimateHtmlWriter : private HtmlSection {
public:
    EstimateHtmlWriter(const Estimate& estimate, const Provenance& provenance, const PageExplanations& told)
        : HtmlSection(estimate, told), m_provenance(&provenance), m_told(&told)
    {
    }

    EstimateHtml write()
    {
        section("totals", "Totals", totals());
        addRemarks();
        addBudgets();
        section("blocks", "Power by block", byBlock());
        addRails();
        if (m_side->supplies)
            section("supplies", "Supplies", htmlSupplies(*m_estimate, *m_told));
        if (m_estimate->period)
            section("modes", "Modes", htmlModes(*m_estimate, *m_told));
        if (const std::string startUp = htmlStartUp(*m_estimate); !startUp.empty())
            section("startup", "Start-up", startUp, true);
        if (!m_side->curve.empty())
            section("thermal", "Temperature", temperature());
        if (!m_side->subsystems.empty())
            section("static", "Static power", staticPower(), true);
        if (!m_estimate->utilisation.empty())
            section("utilisation", "Utilisation", utilisation(), true);
        if (!m_estimate->groups.empty())
            section("groups", "Groups", htmlGroups(*m_estimate, *m_told), true);
        section("provenance", "Provenance", provenance());
        return {lead(), std::move(m_links), std::move(m_body),
                fmt::format("Made by zelm {}{}{}.", ZELM_VERSION,
                            m_provenance->file.empty() ? "" : " from " + htmlText(m_provenance->file),
                            m_provenance->date.empty() ? "" : ", " + m_provenance->date)};
    }

private:
    void section(const char* id, const char* heading, const std::string& html, bool onRequest = false)
    {
        m_links += fmt::format("<li><a href=\"#{}\">{}</a></li>", id, heading);
        m_body +=
            fmt::format("<section id=\"{0}\" aria-labelledby=\"{0}-h\"{1}><h2 id=\"{0}-h\">{2}</h2>\n{3}</section>\n",
                        id, onRequest ? " class=\"detail\"" : "", heading, html);
    }

    std::string lead() const
    {
        HtmlCells words{"Power estimate"};
        const Design& design = m_estimate->design;
        if (design.device)
            words.push_back(htmlText(design.device->part));
        if (!m_side->process.empty())
            words.push_back("process " + htmlText(m_side->process));
        if (design.environment.ambient)
            words.push_back("ambient " + htmlDegrees(*design.environment.ambient));
        if (!m_estimate->cooling.empty()) {
            const Cooling& cooling = m_estimate->cooling.front().cooling;
            words.push_back(fmt::format("{}, θJA {} °C/W", cooling.name.empty() ? "cooling" : htmlText(cooling.name),
                                        cooling.thetaJA));
        }
        if (!m_provenance->date.empty())
            words.push_back(m_provenance->date);
        return fmt::format("{}", fmt::join(words, " · "));
    }

    // ---- Totals ----

    std::string brokenElsewhere(const std::vector<const BudgetResult*>& tight) const
    {
        HtmlCells words;
        for (const BudgetResult* budget : tight)
            words.push_back(htmlText(m_other->settles() ? fmt::format("{} ({:.4g} of {} {})", budget->name,
                                                                      *budget->otherActual, budget->limit, budget->unit)
                                                        : budget->name));
        return fmt::format("<li><strong>! Broken with process {}:</strong> {}.</li>", htmlText(m_other->process),
                           fmt::join(words, ", "));
    }

    std::string keptLine(bool alsoElsewhere) const
    {
        const std::size_t count = m_estimate->budgets.size();
        return fmt::format("<li><strong>✓ Kept:</strong> {}{}{}.</li>",
                           count == 1 ? "the one budget or limit" : fmt::format("all {} budgets and limits", count),
                           m_side->process.empty() ? "" : " with process " + htmlText(m_side->process),
                           m_other && alsoElsewhere ? ", and with " + htmlText(m_other->process) : "");
    }

    std::string verdictBox() const
    {
        std::string lines;
        HtmlCells broken;
        std::vector<const BudgetResult*> tight;
        for (const BudgetResult& budget : m_estimate->budgets) {
            if (budget.broken())
                broken.push_back(htmlText(m_side->settles() ? budget.words() : budget.name));
            else if (!keptElsewhere(budget))
                tight.push_back(&budget);
        }
        bool runsAway = false;
        for (const Side& side : m_estimate->sides) {
            runsAway = runsAway || !side.settles();
            if (!side.settles())
                lines += fmt::format("<li><strong>✗ Process {} finds no equilibrium:</strong> {}.</li>",
                                     htmlText(side.process), htmlText(side.thermal->words));
        }
        // Without an equilibrium the amounts mean nothing.
        if (!broken.empty() && !m_side->settles())
            broken = {fmt::format("{}", fmt::join(broken, ", "))};
        for (const std::string& words : broken)
            lines += fmt::format("<li><strong>✗ Broken:</strong> {}.</li>", words);
        const bool isLimited = !m_estimate->budgets.empty();
        if (isLimited && broken.empty())
            lines += keptLine(tight.empty());
        if (!tight.empty())
            lines += brokenElsewhere(tight);
        if (!isLimited)
            lines += "<li>The design sets no budgets or limits.</li>";
        const char* look = !broken.empty() || !m_side->settles() ? "bad"
                           : !tight.empty() || runsAway          ? "mark"
                           : isLimited                           ? "good"
                                                                 : "none";
        return fmt::format("<div class=\"verdict {}\" role=\"note\" aria-label=\"Verdict\"><ul>{}</ul></div>\n", look,
                           lines);
    }

    std::string cardLines(const Side& side) const
    {
        std::string lines;
        const auto add = [&](const char* name, const std::string& value) {
            lines += fmt::format("<dt>{}</dt><dd>{}</dd>", name, value);
        };
        const auto part = [&](const std::string& amount, double watts) {
            const std::string share = htmlShare(watts, side.totalWatts);
            return share.empty() ? amount : amount + ", " + share;
        };
        if (!side.process.empty())
            add("Dynamic", part(why("dynamic", htmlAmount(m_estimate->dynamicWatts, "W")), m_estimate->dynamicWatts));
        if (!side.process.empty() && side.settles())
            add("Static", part(whyOf("static", side, htmlAmount(side.staticWatts, "W")), side.staticWatts));
        if (side.highestAmbient)
            add("Highest ambient for the junction limit", htmlDegrees(*side.highestAmbient));
        if (side.largestThetaJA && std::isfinite(*side.largestThetaJA))
            add("Largest θJA for the junction limit", htmlFixed(*side.largestThetaJA, kLimitDecimals) + " °C/W");
        if (m_estimate->offchipWatts != 0.0)
            add("Off the chip, in no total", htmlAmount(m_estimate->offchipWatts, "W"));
        return lines.empty() ? "" : fmt::format("<dl>{}</dl>", lines);
    }

    std::string card(const Side& side) const
    {
        const auto figure = [](const std::string& text, const char* words) {
            return fmt::format("<span>{}<small>{}</small></span>", text, words);
        };
        std::string figures = side.settles()
                                  ? figure(whyOf("total", side, htmlAmount(side.totalWatts, "W")), "total on the chip")
                                  : figure(whyOf("total", side, "None"), "thermal runaway");
        if (!side.process.empty() && side.settles())
            figures += figure(whyOf("junction", side, htmlDegrees(side.junction)), "junction temperature");
        const std::string heading = side.process.empty()
                                        ? "Dynamic power only"
                                        : fmt::format("Process {}{}", htmlText(side.process),
                                                      &side == m_side ? ", the design’s" : ", to compare");
        return fmt::format("<div class=\"side\"><h3>{}</h3><p class=\"answer\">{}</p>{}</div>\n", heading, figures,
                           cardLines(side));
    }

    std::string totals() const
    {
        std::string text = verdictBox() + "<div class=\"sides\">\n";
        bool runsAway = false;
        for (const Side& side : m_estimate->sides) {
            text += card(side);
            runsAway = runsAway || !side.settles();
        }
        text += "</div>\n";
        if (m_side->process.empty())
            text += htmlAside("The design names no device, so there is no static power, no junction temperature and no "
                              "utilisation.");
        if (runsAway)
            text += htmlAside("A process that runs away has no junction temperature, no static power and no total.");
        return text + htmlCharts("totals");
    }

    void addRemarks()
    {
        if (const std::string remark = remarkOfDistributions(m_estimate->design); !remark.empty())
            section("remarks", "Remarks", fmt::format("<ul><li>{}</li></ul>\n", htmlText(remark)));
        std::set<std::string> said; // the verdict has said what runs away
        for (const Side& side : m_estimate->sides) {
            if (!side.settles())
                said.insert(fmt::format("process {}: {}", side.process, side.thermal->words));
        }
        std::string lines;
        for (const std::string& warning : m_estimate->warnings) {
            if (!said.contains(warning))
                lines += fmt::format("<li>{}</li>", htmlText(warning));
        }
        if (!lines.empty())
            section("warnings", "Warnings", fmt::format("<div class=\"verdict mark\"><ul>{}</ul></div>\n", lines));
    }

    // ---- Budgets and regulators ----

    std::string budgetTable(const std::vector<const BudgetResult*>& budgets) const
    {
        HtmlTable table{"Budgets and limits", {{"Budget", "t"}, {"Verdict", "t v"}, {"Limit"}, {"Actual"}, {"Margin"}}};
        if (m_other) {
            table.columns.push_back({"At " + m_other->process});
            table.columns.push_back({"Margin at " + m_other->process});
        }
        table.columns.push_back({"Unit", "t"});
        const auto limited = [](double value) { return htmlFixed(value, kLimitDecimals); };
        for (const BudgetResult* budget : budgets) {
            HtmlCells cells{htmlText(budget->name), verdictOf(*budget), limited(budget->limit), limited(budget->actual),
                            limited(budget->limit - budget->actual)};
            const double then = budget->otherActual.value_or(kUnknown);
            if (m_other)
                appendCells(cells, {limited(then), limited(budget->limit - then)});
            cells.push_back(budget->unit == "degrees" ? "°C" : htmlText(budget->unit));
            table.rows.push_back({std::move(cells)});
        }
        return table.html();
    }

    std::string regulatorTable() const
    {
        HtmlTable table{"Regulators: load and margin",
                        {{"Rail", "t"}, {"Verdict", "t v"}, {"Maximum, A"}, {"Load, A"}, {"Margin, A"}}};
        if (m_other) {
            table.columns.push_back({fmt::format("Load at {}, A", m_other->process)});
            table.columns.push_back({fmt::format("Margin at {}, A", m_other->process)});
        }
        table.columns.push_back({"Used"});
        table.columns.push_back({"", "wide"});
        table.kind = "many";
        const auto limited = [](double value) { return htmlFixed(value, kLimitDecimals); };
        for (const auto& [rail, most] : m_estimate->design.regulators) {
            const BudgetResult* budget = m_estimate->budget("regulator of " + rail);
            const double load = budget ? budget->actual : 0.0;
            HtmlCells cells{htmlText(rail), budget ? verdictOf(*budget) : "", limited(most), limited(load),
                            limited(most - load)};
            const double then = budget ? budget->otherActual.value_or(kUnknown) : kUnknown;
            if (m_other)
                appendCells(cells, {limited(then), limited(most - then)});
            appendCells(cells, {htmlShare(load, most), htmlShareBar(load, most)});
            table.rows.push_back({std::move(cells)});
        }
        return table.html();
    }

    void addBudgets()
    {
        std::vector<const BudgetResult*> budgets;
        for (const BudgetResult& budget : m_estimate->budgets) {
            if (!isOfRegulator(budget))
                budgets.push_back(&budget);
        }
        std::stable_sort(budgets.begin(), budgets.end(),
                         [](const auto* one, const auto* two) { return one->broken() && !two->broken(); });
        if (!budgets.empty())
            section("budgets", "Budgets", budgetTable(budgets));
        if (!m_estimate->design.regulators.empty())
            section("regulators", "Regulators", regulatorTable());
    }

    // ---- By block and by rail ----

    std::string byBlock() const
    {
        std::vector<std::pair<std::string, double>> rows;
        for (const Subtotal& sum : subtotals(*m_estimate, By::block)) {
            const bool draws =
                std::any_of(m_estimate->groups.begin(), m_estimate->groups.end(),
                            [&](const auto& group) { return group.block->name == sum.name && !group.onlyCarries; });
            if (sum.watts != 0.0 || draws)
                rows.emplace_back(block(sum.name).title, sum.watts);
        }
        if (m_side->staticWatts > 0.0)
            rows.emplace_back("Static power", m_side->staticWatts);
        if (rows.empty())
            return "<p>No group of the design burns power.</p>\n";
        std::stable_sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.second > b.second; });
        const double total = m_side->totalWatts;
        std::vector<double> sizes{total};
        for (const auto& [name, watts] : rows)
            sizes.push_back(watts);
        const HtmlScale scale(sizes, "W");
        HtmlTable table{"Power by block", {{"Block", "t"}, {"Power, " + scale.unit()}, {"Share"}, {"", "wide"}}};
        bool hasSmall = false;
        for (const auto& [name, watts] : rows) {
            table.rows.push_back(
                {{htmlText(name), scale.text(watts), htmlShare(watts, total), htmlShareBar(watts, total)},
                 inSummary(watts)});
            hasSmall = hasSmall || !table.rows.back().attributes.empty();
        }
        table.foot = {{"Total", whyOf("total", *m_side, scale.text(total)), "", ""}};
        return htmlCharts("blocks") + table.html() + (hasSmall ? kSmallNote : "");
    }

    std::string inSummary(double watts) const
    {
        return watts < kSmall * m_side->totalWatts ? " class=\"detail\"" : "";
    }

    const RailResult* elsewhere(const RailResult& rail) const
    {
        return m_other ? m_other->rail(rail.name) : nullptr;
    }

    // The model knows the power-up current for the worst case only.
    double powerUpOf(const RailResult& rail) const
    {
        const RailResult* there = elsewhere(rail);
        return there && !(there->powerUpAmperes <= rail.powerUpAmperes) ? there->powerUpAmperes : rail.powerUpAmperes;
    }

    HtmlCells railCells(const RailResult& rail, const HtmlScale& amperes, const HtmlScale& watts) const
    {
        const auto of = [&](const Side& side, const std::string& text) {
            return whyOf("rail:" + rail.name, side, text);
        };
        const auto ofCell = [&](const std::string& cell, const std::string& text) {
            return whyOf("static." + cell, *m_side, text);
        };
        HtmlCells cells{htmlText(rail.name) + (rail.inside.empty() ? "" : " *"),
                        ofCell(rail.name, std::isnan(rail.volts) ? "" : htmlFixed(rail.volts, kLimitDecimals)),
                        ofCell(rail.name + "_STATIC_CURRENT", amperes.text(rail.staticAmperes)),
                        of(*m_side, amperes.text(rail.dynamicAmperes)),
                        of(*m_side, amperes.text(rail.amperes())),
                        of(*m_side, watts.text(rail.watts()))};
        const RailResult* there = elsewhere(rail);
        if (m_other)
            cells.push_back(of(*m_other, watts.text(there ? there->watts() : 0.0)));
        return cells;
    }

    std::vector<const RailResult*> loadedRails() const
    {
        std::vector<const RailResult*> rails;
        for (const RailResult& rail : m_side->rails) {
            const RailResult* there = elsewhere(rail);
            if (rail.amperes() != 0.0 || powerUpOf(rail) != 0.0 || (there && there->amperes() != 0.0))
                rails.push_back(&rail);
        }
        const auto size = [](const RailResult* rail) { return std::isnan(rail->watts()) ? 0.0 : rail->watts(); };
        std::stable_sort(rails.begin(), rails.end(),
                         [&](const auto* one, const auto* two) { return size(one) > size(two); });
        return rails;
    }

    void addRails()
    {
        const std::vector<const RailResult*> rails = loadedRails();
        if (rails.empty())
            return;
        std::vector<double> currents, powers{m_side->totalWatts}, powerUps;
        for (const RailResult* rail : rails) {
            const RailResult* there = elsewhere(*rail);
            currents.push_back(rail->amperes());
            powers.insert(powers.end(), {rail->watts(), there ? there->watts() : 0.0});
            powerUps.push_back(powerUpOf(*rail));
        }
        const HtmlScale amperes(currents, "A"), watts(powers, "W"), powerUp(powerUps, "A");
        const bool powersUp = std::any_of(powerUps.begin(), powerUps.end(), [](double up) { return up != 0.0; });
        HtmlTable table{"Rails",
                        {{"Rail", "t"},
                         {"Volts"},
                         {"Static, " + amperes.unit()},
                         {"Dynamic, " + amperes.unit()},
                         {"Total, " + amperes.unit()},
                         {"Power, " + watts.unit()}}};
        table.kind = "sortable";
        table.foot = {{"Total", "", "", "", "", whyOf("total", *m_side, watts.text(m_side->totalWatts))}};
        if (m_other) {
            table.columns.push_back({fmt::format("Power at {}, {}", m_other->process, watts.unit())});
            table.foot.cells.push_back(whyOf("total", *m_other, watts.text(m_other->totalWatts)));
        }
        if (powersUp) {
            table.columns.push_back({"Power-up, " + powerUp.unit()});
            table.foot.cells.emplace_back();
        }
        std::set<std::string> outer;
        bool hasSmall = false;
        for (const RailResult* rail : rails) {
            table.rows.push_back({railCells(*rail, amperes, watts), inSummary(rail->watts())});
            hasSmall = hasSmall || !table.rows.back().attributes.empty();
            if (powersUp)
                table.rows.back().cells.push_back(powerUp.text(powerUpOf(*rail)));
            if (!rail->inside.empty())
                outer.insert(rail->inside);
        }
        std::string notes = hasSmall ? kSmallNote : "";
        for (const std::string& inside : outer)
            notes +=
                htmlAside(fmt::format("* {0} feeds this rail: its static current is part of that of {0}, and counts "
                                      "once in the total.",
                                      htmlText(inside)));
        if (!powersUp && !m_side->process.empty())
            notes += htmlAside("The power-up current is 0 on every rail.");
        section("rails", "Power by rail", htmlCharts("rails") + table.html() + notes);
    }

    // ---- Temperature and static power ----

    std::string operatingPoints() const
    {
        std::vector<double> powers;
        for (const Side& side : m_estimate->sides)
            powers.insert(powers.end(), {side.staticWatts, side.totalWatts});
        const HtmlScale watts(powers, "W");
        HtmlTable table{"Operating points",
                        {{"Process", "t"}, {"Junction, °C"}, {"Static, " + watts.unit()}, {"Total, " + watts.unit()}}};
        table.kind = "few";
        std::string words;
        for (const Side& side : m_estimate->sides) {
            table.rows.push_back({{htmlText(side.process), whyOf("junction", side, htmlFixed(side.junction, 2)),
                                   whyOf("static", side, watts.text(side.staticWatts)),
                                   whyOf("total", side, watts.text(side.totalWatts))}});
            words += htmlAside(htmlText(fmt::format(
                "{}: {}.", side.process, side.thermal ? side.thermal->words : "the junction temperature is given")));
        }
        return table.html() + words;
    }

    std::string coolingCases() const
    {
        if (m_estimate->cooling.size() < 2)
            return {};
        std::vector<double> powers;
        for (const CoolingResult& result : m_estimate->cooling)
            powers.push_back(result.point.power);
        const HtmlScale watts(powers, "W");
        HtmlTable table{
            fmt::format("Cooling cases, process {}", m_side->process),
            {{"Cooling", "t"}, {"θJA, °C/W"}, {"Junction, °C"}, {"Power, " + watts.unit()}, {"Verdict", "t"}}};
        const BudgetResult* limit = m_estimate->budget("junction limit");
        for (const CoolingResult& result : m_estimate->cooling) {
            const OperatingPoint& point = result.point;
            const std::string verdict = !point.converged ? "<b class=\"bad\">✗</b> " + htmlText(point.words)
                                        : limit && point.junction > limit->limit
                                            ? "<b class=\"bad\">✗ settles above the limit</b>"
                                            : "<b class=\"good\">✓ settles</b>";
            const bool isFirst = &result == &m_estimate->cooling.front();
            table.rows.push_back({{htmlText(result.cooling.name) + (isFirst ? " (the design’s)" : ""),
                                   htmlFixed(result.cooling.thetaJA, kLimitDecimals),
                                   htmlFixed(point.converged ? point.junction : kUnknown, 2),
                                   point.converged ? watts.text(point.power) : "none", verdict}});
        }
        return table.html();
    }

    std::string temperature() const
    {
        std::vector<double> powers;
        HtmlTable table{"Total power by junction temperature", {{"Junction, °C"}}};
        for (const Side& side : m_estimate->sides) {
            for (const auto& [junction, watts] : side.curve)
                powers.push_back(watts);
        }
        const HtmlScale scale(powers, "W");
        for (const Side& side : m_estimate->sides)
            table.columns.push_back({fmt::format("{}, {}", side.process, scale.unit())});
        for (std::size_t i = 0; i < m_side->curve.size(); ++i) {
            HtmlCells cells{fmt::format("{}", htmlFixed(m_side->curve[i].first, 0))};
            for (const Side& side : m_estimate->sides)
                cells.push_back(scale.text(side.curve[i].second));
            table.rows.push_back({std::move(cells)});
        }
        return htmlCharts("thermal") +
               htmlDetail(operatingPoints() + coolingCases() + htmlFolded("The curves in numbers", table.html()));
    }

    std::string staticPower() const
    {
        static const std::map<std::string_view, const char*> words{
            {"PL", "Programmable logic"}, {"PS_HARL", "Processing system and platform management"},
            {"NOC", "Network on chip"},   {"NEMT", "Compute array"},
            {"GT", "Transceivers"},       {"TOTAL", "The model’s own total"}};
        std::vector<double> powers;
        for (const Side& side : m_estimate->sides) {
            for (const Subsystem& subsystem : side.subsystems)
                powers.push_back(subsystem.watts);
        }
        const HtmlScale watts(powers, "W");
        HtmlTable table{"Static power by subsystem", {{"Subsystem", "t"}, {"Cell", "t"}}};
        for (const Side& side : m_estimate->sides)
            table.columns.push_back({fmt::format("{}, {}", side.process, watts.unit())});
        for (std::size_t i = 0; i < m_side->subsystems.size(); ++i) {
            const std::string_view cell = m_side->subsystems[i].cell;
            const auto known = words.find(cell.substr(0, cell.find("_STATIC_POWER")));
            HtmlCells cells{known == words.end() ? htmlText(cell) : known->second, htmlCode(cell)};
            for (const Side& side : m_estimate->sides)
                cells.push_back(watts.text(side.subsystems[i].watts));
            table.rows.push_back({std::move(cells)});
        }
        return table.html() +
               htmlAside(
                   "The model’s own total counts some rails otherwise than the sum over rails does, so the two differ "
                   "a little.") +
               htmlUncertainty(uncertainties(), "Static");
    }

    std::string utilisation() const
    {
        HtmlTable table{"Resources used", {{"Resource", "t"}, {"Used"}, {"Available"}, {"Share"}, {"", "wide"}}};
        if (m_estimate->design.device)
            table.caption += " of " + m_estimate->design.device->part;
        HtmlCells rest;
        for (const Utilisation& use : m_estimate->utilisation) {
            const std::string share = htmlShare(use.used, use.available);
            if (!(use.used > 0.0))
                rest.push_back(htmlText(fmt::format("{} ({})", use.resource, htmlCount(use.available))));
            else
                table.rows.push_back({{htmlText(use.resource), htmlCount(use.used), htmlCount(use.available),
                                       use.used > use.available ? fmt::format("<b class=\"bad\">✗ {}</b>",
                                                                              share.empty() ? "none there" : share)
                                                                : share,
                                       htmlShareBar(use.used, use.available)}});
        }
        return (table.rows.empty() ? "" : table.html()) +
               (rest.empty() ? "" : htmlAside(fmt::format("Not used: {}.", fmt::join(rest, ", "))));
    }

    // ---- Provenance ----

    std::string provenance() const
    {
        HtmlTable made{"What the report was made from", {{"What", "t"}, {"Which", "t"}, {"SHA-256", "t"}}};
        if (!m_provenance->file.empty())
            made.rows.push_back({{"Design", htmlText(m_provenance->file), htmlCode(m_provenance->sha256)}});
        for (const DataFile& file : m_provenance->included)
            made.rows.push_back({{"Included", htmlText(file.name), htmlCode(file.sha256)}});
        made.rows.push_back({{"Tool", fmt::format("zelm {}", ZELM_VERSION), ""}});
        if (!m_provenance->date.empty())
            made.rows.push_back({{"Date", m_provenance->date, ""}});
        HtmlTable data{"Data files", {{"File", "t"}, {"SHA-256", "t"}}};
        for (const DataFile& file : dataFiles(blocksOf(*m_estimate)))
            data.rows.push_back({{htmlText(file.name), htmlCode(file.sha256)}});
        made.kind = data.kind = "few";
        return made.html() +
               htmlDetail(htmlFolded(fmt::format("{} data files with their SHA-256", data.rows.size()), data.html()));
    }

    const Provenance* m_provenance;
    const PageExplanations* m_told;
    std::string m_links;
    std::string m_body;
};

} // namespace

EstimateHtml estimateHtml(const Estimate& estimate, const Provenance& provenance, const PageExplanations& told)
{
    return EstimateHtmlWriter(estimate, provenance, told).write();
}

} // namespace zelm::host
