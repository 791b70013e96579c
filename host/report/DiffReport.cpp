#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/report/HtmlPage.h"
#include "host/report/Report.h"
#include "host/report/StudyReports.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace zelm::host {

namespace {

const char* fateWord(DiffGroup::Fate fate)
{
    switch (fate) {
    case DiffGroup::Fate::added:
        return "added";
    case DiffGroup::Fate::removed:
        return "removed";
    case DiffGroup::Fate::renamed:
        return "renamed";
    case DiffGroup::Fate::changed:
        break;
    }
    return "changed";
}

std::string signedAmount(double change, std::string_view unit)
{
    return fmt::format("{}{}", change > 0.0 ? "+" : "", amountText(change, unit));
}

std::string shareText(const DiffQuantity& quantity)
{
    const double share = quantity.change() / quantity.before;
    return quantity.quantity.unit() == "C" || !std::isfinite(share) ? "" : fmt::format("{:+.2f} %", 100.0 * share);
}

std::string partName(const DiffPart& part)
{
    return part.group.empty() ? part.input : fmt::format("{}: {}", part.group, part.input);
}

std::string fateText(const DiffGroup& group)
{
    return group.before.empty() ? fateWord(group.fate) : fmt::format("renamed, was {}", group.before);
}

std::string inputWords(const DiffInput& input)
{
    const auto word = [](const std::string& value) { return value.empty() ? std::string("not set") : value; };
    return fmt::format("{}: {} -> {}", input.place, word(input.before), word(input.after));
}

bool changes(const DiffQuantity& quantity)
{
    return quantity.change() != 0.0; // NaN too
}

// Groups in which nothing differs, but which take what others carry to them.
std::vector<const DiffQuantity*> groupsThatFollow(const Diff& diff)
{
    std::vector<const DiffQuantity*> all;
    for (const DiffQuantity& quantity : diff.quantities) {
        const std::string& name = quantity.quantity.of;
        const bool isKnown = std::any_of(diff.groups.begin(), diff.groups.end(), [&](const DiffGroup& group) {
            return name == group.name || name.starts_with(group.name + " (");
        });
        if (quantity.quantity.kind == NamedQuantity::Kind::group && quantity.change() != 0.0 && !isKnown)
            all.push_back(&quantity);
    }
    return all;
}

// The quantities that a page explains by pictures.
bool isTotal(const DiffQuantity& quantity)
{
    return quantity.quantity.kind == NamedQuantity::Kind::total ||
           quantity.quantity.kind == NamedQuantity::Kind::junction;
}

Json inputJson(const DiffInput& input)
{
    const auto value = [](const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); };
    return {{"input", input.place}, {"before", value(input.before)}, {"after", value(input.after)}};
}

// From before to after, part by part.
std::string waterfall(const DiffQuantity& quantity)
{
    const std::string_view unit = quantity.quantity.unit();
    double least = std::min(quantity.before, quantity.after);
    double most = std::max(quantity.before, quantity.after);
    double now = quantity.before;
    for (const DiffPart& part : quantity.parts) {
        now += part.change;
        least = std::min(least, now);
        most = std::max(most, now);
    }
    const double margin = std::max(most - least, 1e-12) * 0.1;
    const double origin = least - margin; // the axis begins there: changes are small beside the whole
    const auto row = [&](const std::string& name, const std::string& amount, double from, double to,
                         const char* color) {
        return std::vector<std::string>{htmlText(name), amount,
                                        htmlBars({{from - origin, to - origin, color}}, 0.0,
                                                 most - least + 2.0 * margin, fmt::format("{} {}", name, amount))};
    };
    std::vector<std::vector<std::string>> rows{
        row("before", amountText(quantity.before, unit), origin, quantity.before, "soft")};
    now = quantity.before;
    for (const DiffPart& part : quantity.parts) {
        rows.push_back(row(partName(part), signedAmount(part.change, unit), now, now + part.change,
                           part.change > 0.0 ? "dynamic" : "static"));
        now += part.change;
    }
    rows.push_back(row("after", amountText(quantity.after, unit), origin, quantity.after, "soft"));
    return htmlTable(quantity.quantity.name(), {"<Change", "Amount", "<"}, rows) +
           fmt::format("<p class=\"soft\">The bars begin at {}, so that changes can be seen.</p>\n",
                       amountText(origin, unit));
}

} // namespace

std::string diffText(const Diff& diff)
{
    std::string text = shown(fmt::format("{} -> {}", diff.before, diff.after)) + "\n\n";
    constexpr std::size_t few = 10; // those that change most; there are more of them than lines on a screen
    std::size_t rails = 0;
    TextTable amounts({"Quantity", "Before", "After", "Change", ""});
    for (const DiffQuantity& quantity : diff.quantities) {
        const std::string_view unit = quantity.quantity.unit();
        if (quantity.quantity.kind == NamedQuantity::Kind::group || !(changes(quantity) || isTotal(quantity)))
            continue;
        if (quantity.quantity.kind == NamedQuantity::Kind::rail && ++rails > few)
            continue;
        amounts.row({shown(quantity.quantity.name()), amountText(quantity.before, unit),
                     amountText(quantity.after, unit), signedAmount(quantity.change(), unit), shareText(quantity)});
    }
    text += amounts.text();
    if (rails > few)
        text += fmt::format("and {} more currents of rails\n", rails - few);
    const std::vector<const DiffQuantity*> following = groupsThatFollow(diff);
    if (!diff.groups.empty() || !following.empty()) {
        TextTable groups({"Group", "What", "Before", "After", "Change"});
        for (const DiffGroup& group : diff.groups)
            groups.row({shown(group.name), shown(fateText(group)), si(group.wattsBefore, "W"),
                        si(group.wattsAfter, "W"), signedAmount(group.wattsAfter - group.wattsBefore, "W")});
        for (const DiffQuantity* group : following)
            groups.row({shown(group->quantity.of), "follows", si(group->before, "W"), si(group->after, "W"),
                        signedAmount(group->change(), "W")});
        text += "\n" + groups.text();
    }
    std::string inputs;
    for (const DiffInput& setting : diff.settings)
        inputs += "- " + shown(inputWords(setting)) + "\n";
    for (const DiffGroup& group : diff.groups) {
        for (const DiffInput& input : group.inputs)
            inputs += "- " + shown(fmt::format("{}: {}", group.name, inputWords(input))) + "\n";
    }
    if (!inputs.empty())
        text += "\nWhat differs\n" + inputs;
    const DiffQuantity& total = diff.total();
    if (!total.parts.empty()) {
        TextTable parts({"Of the change of " + total.quantity.name(), "Change"});
        for (const DiffPart& part : total.parts)
            parts.row({shown(partName(part)), signedAmount(part.change, "W")});
        parts.rule();
        parts.row({"All", signedAmount(total.change(), "W")});
        text += "\n" + parts.text();
    } else if (diff.groups.empty() && diff.settings.empty()) {
        text += "\nNothing that the power depends on differs.\n";
    }
    return text;
}

Json diffJson(const Diff& diff)
{
    Json json{{"format", kJsonFormat}, {"before", diff.before}, {"after", diff.after}};
    for (const char* list : {"quantities", "groups", "settings"})
        json[list] = Json::array();
    for (const DiffQuantity& quantity : diff.quantities) {
        Json each{{"quantity", quantity.quantity.name()}, {"unit", quantity.quantity.unit()}};
        addAmount(each, "before", quantity.before);
        addAmount(each, "after", quantity.after);
        addAmount(each, "change", quantity.change());
        each["parts"] = Json::array();
        for (const DiffPart& part : quantity.parts)
            each["parts"].push_back({{"group", part.group}, {"input", part.input}, {"change", part.change}});
        json["quantities"].push_back(std::move(each));
    }
    for (const DiffGroup& group : diff.groups) {
        Json each{{"group", group.name}, {"what", fateWord(group.fate)}};
        if (!group.before.empty())
            each["was"] = group.before;
        addAmount(each, "wattsBefore", group.wattsBefore);
        addAmount(each, "wattsAfter", group.wattsAfter);
        each["inputs"] = Json::array();
        for (const DiffInput& input : group.inputs)
            each["inputs"].push_back(inputJson(input));
        json["groups"].push_back(std::move(each));
    }
    for (const DiffInput& setting : diff.settings)
        json["settings"].push_back(inputJson(setting));
    return json;
}

std::string diffHtml(const Diff& diff)
{
    std::string body;
    std::vector<std::vector<std::string>> amounts;
    std::vector<std::vector<std::string>> inputs;
    for (const DiffQuantity& quantity : diff.quantities) {
        const std::string_view unit = quantity.quantity.unit();
        if (isTotal(quantity) && !quantity.parts.empty())
            body += htmlSection(quantity.quantity.name(), waterfall(quantity));
        if (changes(quantity) || isTotal(quantity))
            amounts.push_back({htmlText(quantity.quantity.name()), amountText(quantity.before, unit),
                               amountText(quantity.after, unit), signedAmount(quantity.change(), unit),
                               shareText(quantity)});
    }
    body += htmlSection("Before and after",
                        htmlTable("Quantities that change", {"<Quantity", "Before", "After", "Change", ""}, amounts));
    const auto addInput = [&](const std::string& group, const std::string& what, const DiffInput& input) {
        inputs.push_back(
            {htmlText(group), htmlText(what), htmlText(input.place), htmlText(input.before), htmlText(input.after)});
    };
    for (const DiffInput& setting : diff.settings)
        addInput("", "", setting);
    for (const DiffGroup& group : diff.groups) {
        for (const DiffInput& input : group.inputs)
            addInput(group.name, fateText(group), input);
        if (group.inputs.empty())
            addInput(group.name, fateText(group), {});
    }
    if (!inputs.empty())
        body += htmlSection("What differs", htmlTable("Groups and inputs that differ",
                                                      {"<Group", "<What", "<Input", "<Before", "<After"}, inputs));
    const DiffQuantity& total = diff.total();
    return htmlPage(fmt::format("{} to {}", diff.before, diff.after),
                    htmlText(fmt::format("{}: {} to {}, {}", total.quantity.name(), amountText(total.before, "W"),
                                         amountText(total.after, "W"), signedAmount(total.change(), "W"))),
                    body);
}

} // namespace zelm::host
