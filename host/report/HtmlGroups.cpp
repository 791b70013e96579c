#include "host/report/HtmlNumbers.h"
#include "host/report/HtmlPage.h"
#include "host/report/HtmlSection.h"
#include "host/report/SubtotalsReport.h"

#include <fmt/format.h>

#include <algorithm>

namespace zelm::host {

namespace {

class GroupsSection : private HtmlSection {
public:
    using HtmlSection::HtmlSection;

    std::string html() const
    {
        std::string text = groupsTable() + levels();
        text += "<h3>Outputs and inputs of each group</h3>\n";
        text += htmlAside(
            "An input comes from the design, its rails, the device, another block (carried), or is a default, "
            "which is grey.");
        text += "<div class=\"lines\" id=\"group-boxes\">\n";
        for (std::size_t i = 0; i < m_estimate->groups.size(); ++i)
            text += groupBox(i);
        text += "</div>\n";
        if (m_estimate->carried.empty())
            return text;
        HtmlTable table{"Carried between blocks", {{"From", "t"}, {"To", "t"}, {"Value"}}};
        for (const Carried& carried : m_estimate->carried)
            table.rows.push_back(
                {{htmlText(carried.from.text()), htmlText(carried.to.text()), htmlText(valueText(carried.value))}});
        return text + "<h3>What was carried</h3>\n" +
               htmlFolded(fmt::format("{} values between blocks", m_estimate->carried.size()), table.html());
    }

private:
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
        const bool isDeep = hasHierarchy(*m_estimate);
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
                appendCells(cells,
                            {why("group:" + group.name, htmlExactly(group.watts, watts.text(group.watts))),
                             htmlExactly(group.watts, htmlShare(group.watts, all)), htmlShareBar(group.watts, all)});
            table.rows.push_back({std::move(cells)});
        }
        return table.html();
    }

    std::string levels() const
    {
        if (!hasHierarchy(*m_estimate))
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
                {{htmlCode(part.cell), htmlText(meaningOf(group, part.cell)), htmlText(part.rail),
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
            table.rows.push_back({{htmlCode(input.cell), htmlText(meaningOf(group, input.cell)),
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
            text += htmlAside(fmt::format("Off the chip, in no total: {}.", htmlAmount(group.offchipWatts, "W")));
        text += htmlUncertainty(m_uncertainties, group.block->name);
        return text + inputsOf(group) + "</details>\n";
    }

    const std::map<std::string, std::vector<Uncertainty>, std::less<>> m_uncertainties = uncertainties();
};

} // namespace

std::string htmlGroups(const Estimate& estimate, const PageExplanations& told)
{
    return GroupsSection(estimate, told).html();
}

} // namespace zelm::host
