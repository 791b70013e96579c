#include "host/report/HtmlEstimate.h"

#include "host/base/Text.h"
#include "host/blocks/Uncertainty.h"
#include "host/estimate/Subtotals.h"
#include "host/report/HtmlNumbers.h"
#include "host/report/HtmlPage.h"
#include "host/study/StudyIdentity.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace zelm::host {

namespace {

using HtmlCells = std::vector<std::string>;

constexpr double kNoAmount = std::numeric_limits<double>::quiet_NaN();
constexpr int kLimitDecimals = 3;
constexpr double kSmall = 0.01; // of the total: what the printed summary leaves out

// For what a section is when it is printed: the summary leaves it out unless all is asked for.
std::string onlyOnRequest(const std::string& html)
{
    return html.empty() ? "" : fmt::format("<div class=\"detail\">{}</div>\n", html);
}

constexpr const char* kSmallNote =
    "<p class=\"soft brief\">What draws less than 1 % of the total is left out of this summary.</p>\n";

// Where a script draws charts, if one runs.
std::string chartsOf(const char* section)
{
    return fmt::format("<div id=\"{}-charts\"></div>\n", section);
}

std::string aside(const std::string& html)
{
    return fmt::format("<p class=\"soft\">{}</p>\n", html);
}

std::string folded(const std::string& summary, const std::string& html)
{
    return fmt::format("<details><summary>{}</summary>{}</details>\n", summary, html);
}

// What a column is sorted by where its text is rounded.
std::string exactly(double value, const std::string& text)
{
    return fmt::format("<data value=\"{}\">{}</data>", value, text);
}

std::string codeText(std::string_view text)
{
    return fmt::format("<code>{}</code>", htmlText(text));
}

std::string withSide(const std::string& name, const std::string& process)
{
    return process.empty() ? name : name + "@" + process;
}

void appendCells(HtmlCells& cells, HtmlCells more)
{
    cells.insert(cells.end(), std::move_iterator(more.begin()), std::move_iterator(more.end()));
}

// A row's name that stands above: only who hears the table has it again.
std::string rowName(const std::string& name, bool isRepeated)
{
    return isRepeated ? fmt::format("<span class=\"unseen\">{}</span>", htmlText(name)) : htmlText(name);
}

bool isKeptElsewhere(const BudgetResult& budget)
{
    return !budget.otherActual || *budget.otherActual <= budget.limit;
}

bool isOfRegulator(const BudgetResult& budget)
{
    return budget.name.starts_with("regulator of ");
}

std::string uncertaintyText(const std::map<std::string, std::vector<Uncertainty>, std::less<>>& known,
                            std::string_view block)
{
    const auto of = known.find(block);
    if (of == known.end())
        return {};
    HtmlCells words;
    for (const Uncertainty& uncertainty : of->second)
        words.push_back(htmlText(uncertaintyWords(uncertainty)));
    return aside(fmt::format("Uncertainty, one standard deviation: {}.", fmt::join(words, "; ")));
}

std::string durationText(double seconds)
{
    constexpr double hour = 3600.0;
    return seconds >= hour ? fmt::format("{:.1f} h", seconds / hour) : htmlAmount(seconds, "s");
}

// The report of one estimate, section by section.
class EstimateHtmlWriter {
public:
    EstimateHtmlWriter(const Estimate& estimate, const Provenance& provenance, const PageExplanations& told)
        : m_estimate(&estimate), m_side(&estimate.side()),
          m_other(estimate.sides.size() > 1 ? &estimate.sides[1] : nullptr), m_provenance(&provenance), m_told(&told),
          m_uncertainties(uncertainties())
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
            section("supplies", "Supplies", supplies());
        if (m_estimate->period)
            section("modes", "Modes", modes());
        addStartUp();
        if (!m_side->curve.empty())
            section("thermal", "Temperature", temperature());
        if (!m_side->subsystems.empty())
            section("static", "Static power", onlyOnRequest(staticPower()), true);
        if (!m_estimate->utilisation.empty())
            section("utilisation", "Utilisation", utilisation(), true);
        if (!m_estimate->groups.empty())
            section("groups", "Groups", groups(), true);
        section("provenance", "Provenance", provenance());
        return {lead(), m_links, m_body,
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

    // A number that says how it comes about, where the page knows.
    std::string why(const std::string& name, const std::string& text) const
    {
        const auto place = m_told->places.find(name);
        if (text.empty() || place == m_told->places.end())
            return text;
        return fmt::format("<span data-why=\"{}\">{}</span>", place->second, text);
    }

    std::string whyOf(const std::string& name, const Side& side, const std::string& text) const
    {
        return why(withSide(name, side.process), text);
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
            else if (!isKeptElsewhere(budget))
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
            text += aside("The design names no device, so there is no static power, no junction temperature and no "
                          "utilisation.");
        if (runsAway)
            text += aside("A process that runs away has no junction temperature, no static power and no total.");
        return text + chartsOf("totals");
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

    std::string verdictOf(const BudgetResult& budget) const
    {
        if (budget.broken()) {
            std::string words = budget.verdict();
            constexpr std::string_view loud = "BROKEN";
            if (const std::size_t at = words.find(loud); at != std::string::npos)
                words.replace(at, loud.size(), "broken");
            return fmt::format("<b class=\"bad\">✗ {}</b>", htmlText(words));
        }
        if (!isKeptElsewhere(budget))
            return fmt::format("<b class=\"mark\">! kept, broken at {}</b>", htmlText(m_other->process));
        return "<b class=\"good\">✓ kept</b>";
    }

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
            const double then = budget->otherActual.value_or(kNoAmount);
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
            const double then = budget ? budget->otherActual.value_or(kNoAmount) : kNoAmount;
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
        return chartsOf("blocks") + table.html() + (hasSmall ? kSmallNote : "");
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
            notes += aside(fmt::format("* {0} feeds this rail: its static current is part of that of {0}, and counts "
                                       "once in the total.",
                                       htmlText(inside)));
        if (!powersUp && !m_side->process.empty())
            notes += aside("The power-up current is 0 on every rail.");
        section("rails", "Power by rail", chartsOf("rails") + table.html() + notes);
    }

    // ---- Supplies ----

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
        const double most = supply.maxAmperes.value_or(kNoAmount);
        return {rowName(supply.name, !isFirst),
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

    std::string supplies() const
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
                notes += aside(htmlText(fmt::format("{}no supply feeds {}: {} that the board’s input doesn’t count.",
                                                    side.process.empty() ? "" : side.process + ": ",
                                                    fmt::join(tree.unfed, ", "), htmlAmount(tree.unfedWatts, "W"))));
        }
        return chartsOf("supplies") + table.html() + notes;
    }

    // ---- Modes ----

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
                    {{rowName(mode.name, i > 0), i == 0 ? durationText(mode.seconds) : "",
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
        return aside(htmlText(words + "."));
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
                    {{rowName(supply.name, side != settled.front()), htmlText(side->process),
                      amperes.text(supply.peakAmperes), htmlText(supply.peakMode),
                      amperes.text(supply.maxAmperes.value_or(kNoAmount)), amperes.text(supply.powerUpAmperes),
                      watts.text(supply.inputWatts), watts.text(supply.peakInputWatts)}});
            }
        }
        return table.html();
    }

    std::string modes() const
    {
        const Period& period = *m_estimate->period;
        std::string text = modeTable(period);
        std::vector<const PeriodSide*> settled;
        for (const PeriodSide& side : period.sides) {
            text += periodWords(side);
            if (side.settles)
                settled.push_back(&side);
        }
        std::string more = chartsOf("modes");
        if (!settled.empty())
            more += railsOverModes(settled);
        if (!settled.empty() && m_side->supplies)
            more += suppliesOverModes(settled);
        return text + onlyOnRequest(more + groupsOverModes(period));
    }

    void addStartUp()
    {
        std::string tables;
        for (const Side& side : m_estimate->sides) {
            HtmlTable table{fmt::format("Junction from ambient, process {}", side.process),
                            {{"After"}, {"Lowest, °C"}, {"Highest, °C"}}};
            for (const WarmingUp& stretch : side.startUp)
                table.rows.push_back({{htmlAmount(stretch.seconds, "s"), htmlFixed(stretch.lowestJunction, 2),
                                       htmlFixed(stretch.highestJunction, 2)}});
            if (!table.rows.empty())
                tables += table.html();
        }
        if (!tables.empty())
            section("startup", "Start-up", chartsOf("startup") + folded("The start-up in numbers", tables), true);
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
            words += aside(htmlText(fmt::format(
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
                                   htmlFixed(point.converged ? point.junction : kNoAmount, 2),
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
        return chartsOf("thermal") +
               onlyOnRequest(operatingPoints() + coolingCases() + folded("The curves in numbers", table.html()));
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
            HtmlCells cells{known == words.end() ? htmlText(cell) : known->second, codeText(cell)};
            for (const Side& side : m_estimate->sides)
                cells.push_back(watts.text(side.subsystems[i].watts));
            table.rows.push_back({std::move(cells)});
        }
        return table.html() +
               aside(
                   "The model’s own total counts some rails otherwise than the sum over rails does, so the two differ "
                   "a little.") +
               uncertaintyText(m_uncertainties, "Static");
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
               (rest.empty() ? "" : aside(fmt::format("Not used: {}.", fmt::join(rest, ", "))));
    }

    // ---- Groups ----

    static std::string kindText(const GroupResult& group)
    {
        return htmlText(group.block->title) + (group.count > 1 ? fmt::format(" × {}", group.count) : "");
    }

    std::string groupsTable() const
    {
        std::vector<double> powers;
        for (const GroupResult& group : m_estimate->groups)
            powers.push_back(group.watts);
        const HtmlScale watts(powers, "W");
        HtmlTable table{"Groups and their dynamic power", {{"Group", "t"}, {"Kind", "t"}}};
        const bool isDeep = hasLevels();
        if (isDeep)
            table.columns.push_back({"In", "t"});
        table.columns.insert(table.columns.end(), {{"Power, " + watts.unit()}, {"Share"}, {"", "wide"}});
        table.kind = "sortable";
        for (std::size_t i = 0; i < m_estimate->groups.size(); ++i) {
            const GroupResult& group = m_estimate->groups[i];
            HtmlCells cells{fmt::format("<a href=\"#g{}\">{}</a>", i, htmlText(group.name)), kindText(group)};
            if (isDeep)
                cells.push_back(htmlText(group.in));
            const double all = m_estimate->dynamicWatts;
            if (group.onlyCarries) // no power of its own
                appendCells(cells, {"", "", ""});
            else
                appendCells(cells, {why("group:" + group.name, exactly(group.watts, watts.text(group.watts))),
                                    exactly(group.watts, htmlShare(group.watts, all)), htmlShareBar(group.watts, all)});
            table.rows.push_back({std::move(cells)});
        }
        return table.html();
    }

    bool hasLevels() const
    {
        return std::any_of(m_estimate->groups.begin(), m_estimate->groups.end(),
                           [](const GroupResult& group) { return !group.in.empty(); });
    }

    std::string levels() const
    {
        if (!hasLevels())
            return {};
        const std::vector<Subtotal> sums = subtotals(*m_estimate, By::in);
        std::vector<double> powers;
        for (const Subtotal& sum : sums)
            powers.push_back(sum.watts);
        const HtmlScale watts(powers, "W");
        HtmlTable table{"Hierarchy", {{"In", "t"}, {"Groups"}, {"Power, " + watts.unit()}, {"Share"}, {"", "wide"}}};
        table.kind = "sortable";
        const double all = m_estimate->dynamicWatts;
        for (const Subtotal& sum : sums)
            table.rows.push_back({{sum.name.empty() ? "(none)" : htmlText(sum.name), std::to_string(sum.groups),
                                   watts.text(sum.watts), htmlShare(sum.watts, all), htmlShareBar(sum.watts, all)}});
        return table.html();
    }

    std::string outputsOf(const GroupResult& group) const
    {
        if (group.contributions.empty())
            return {};
        std::vector<double> powers, currents;
        for (const Contribution& part : group.contributions) {
            powers.push_back(part.watts);
            currents.push_back(part.amperes);
        }
        const HtmlScale watts(powers, "W"), amperes(currents, "A");
        HtmlTable table{group.name + ": outputs",
                        {{"Output", "t"},
                         {"Meaning", "t m"},
                         {"Rail", "t"},
                         {"Power, " + watts.unit()},
                         {"Current, " + amperes.unit()}}};
        for (const Contribution& part : group.contributions) {
            const std::string name = fmt::format("group:{}.{} in ", group.name, part.cell);
            table.rows.push_back(
                {{codeText(part.cell), htmlText(meaningOf(group, part.cell)), htmlText(part.rail),
                  why(name + "W", watts.text(part.watts)), why(name + "A", amperes.text(part.amperes))}});
        }
        return table.html();
    }

    // A clock's inputs may be those of the blocks that it feeds.
    static std::string_view meaningOf(const GroupResult& group, std::string_view cell)
    {
        for (const Block* known : inputBlocks(*group.block)) {
            if (const ZelmCellInfo* found = known->findCell(cell))
                return found->meaning;
        }
        return {};
    }

    std::string inputsOf(const GroupResult& group) const
    {
        const auto defaults = std::count_if(group.inputs.begin(), group.inputs.end(),
                                            [](const InputValue& input) { return input.origin == Origin::byDefault; });
        HtmlTable table{fmt::format("{}: {} inputs, {} by default", group.name, group.inputs.size(),
                                    defaults == 0 ? "none" : std::to_string(defaults)),
                        {{"Input", "t"}, {"Meaning", "t m"}, {"Value"}, {"Unit", "t"}, {"Comes from", "t"}}};
        for (const InputValue& input : group.inputs) {
            const std::string name = fmt::format("group:{}.{}", group.name, input.cell);
            table.rows.push_back({{codeText(input.cell), htmlText(meaningOf(group, input.cell)),
                                   why(name, htmlText(valueText(input.value))), htmlText(input.unit),
                                   std::string(originWord(input.origin))},
                                  input.origin == Origin::byDefault ? " class=\"default\"" : ""});
        }
        return table.html();
    }

    // Its power explains itself in the table: a button within what folds is hard to reach.
    std::string groupBox(std::size_t place) const
    {
        const GroupResult& group = m_estimate->groups[place];
        std::string text = fmt::format(
            "<details id=\"g{}\"><summary><span class=\"group\"><span>{}</span><span class=\"soft "
            "kind\">{}</span><span class=\"w\">{}</span></span></summary>",
            place, htmlText(group.name), kindText(group), group.onlyCarries ? "" : htmlAmount(group.watts, "W"));
        text += outputsOf(group);
        if (group.offchipWatts != 0.0)
            text += aside(fmt::format("Off the chip, in no total: {}.", htmlAmount(group.offchipWatts, "W")));
        text += uncertaintyText(m_uncertainties, group.block->name);
        return text + inputsOf(group) + "</details>\n";
    }

    std::string groups() const
    {
        std::string text = groupsTable() + levels();
        text += "<h3>Outputs and inputs of each group</h3>\n";
        text +=
            aside("An input comes from the design, its rails, the device, another block (carried), or is a default, "
                  "which is grey.");
        text += "<div class=\"lines\" id=\"group-boxes\">\n";
        for (std::size_t i = 0; i < m_estimate->groups.size(); ++i)
            text += groupBox(i);
        text += "</div>\n";
        if (m_estimate->carried.empty())
            return text;
        HtmlTable table{"Carried between blocks", {{"From", "t"}, {"To", "t"}, {"Value"}}};
        for (const Carried& carried : m_estimate->carried)
            table.rows.push_back({{htmlText(carried.from), htmlText(carried.to), htmlText(carried.value)}});
        return text + "<h3>What was carried</h3>\n" +
               folded(fmt::format("{} values between blocks", m_estimate->carried.size()), table.html());
    }

    // ---- Provenance ----

    std::string provenance() const
    {
        HtmlTable made{"What the report was made from", {{"What", "t"}, {"Which", "t"}, {"SHA-256", "t"}}};
        if (!m_provenance->file.empty())
            made.rows.push_back({{"Design", htmlText(m_provenance->file), codeText(m_provenance->sha256)}});
        for (const DataFile& file : m_provenance->included)
            made.rows.push_back({{"Included", htmlText(file.name), codeText(file.sha256)}});
        made.rows.push_back({{"Tool", fmt::format("zelm {}", ZELM_VERSION), ""}});
        if (!m_provenance->date.empty())
            made.rows.push_back({{"Date", m_provenance->date, ""}});
        HtmlTable data{"Data files", {{"File", "t"}, {"SHA-256", "t"}}};
        for (const DataFile& file : dataFiles(blocksOf(*m_estimate)))
            data.rows.push_back({{htmlText(file.name), codeText(file.sha256)}});
        made.kind = data.kind = "few";
        return made.html() +
               onlyOnRequest(folded(fmt::format("{} data files with their SHA-256", data.rows.size()), data.html()));
    }

    const Estimate* m_estimate;
    const Side* m_side;
    const Side* m_other; ///< null if there is one side only
    const Provenance* m_provenance;
    const PageExplanations* m_told;
    std::map<std::string, std::vector<Uncertainty>, std::less<>> m_uncertainties;
    std::string m_links;
    std::string m_body;
};

} // namespace

EstimateHtml estimateHtml(const Estimate& estimate, const Provenance& provenance, const PageExplanations& told)
{
    return EstimateHtmlWriter(estimate, provenance, told).write();
}

} // namespace zelm::host
