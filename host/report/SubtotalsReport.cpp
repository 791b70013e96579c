#include "host/report/SubtotalsReport.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

namespace zelm::host {

namespace {

constexpr std::array<std::pair<const char*, By>, 4> kWords{
    {{"in", By::in}, {"block", By::block}, {"rail", By::rail}, {"clock", By::clock}}};

std::string wordOf(By by)
{
    return std::find_if(kWords.begin(), kWords.end(), [&](const auto& word) { return word.second == by; })->first;
}

std::vector<Subtotal> wished(const Estimate& estimate, const SubtotalsWish& wish)
{
    std::vector<Subtotal> all = subtotals(estimate, wish.by);
    const auto before = [&](const Subtotal& a, const Subtotal& b) {
        return wish.sort == "watts" ? a.watts > b.watts : wish.sort == "groups" ? a.groups > b.groups : a.name < b.name;
    };
    if (!wish.sort.empty())
        std::stable_sort(all.begin(), all.end(), before);
    all.resize(std::min(all.size(), wish.top.value_or(all.size())));
    return all;
}

std::string shareText(double watts, const Estimate& estimate)
{
    return estimate.dynamicWatts > 0.0 ? fmt::format("{:.1f} %", 100.0 * watts / estimate.dynamicWatts) : "";
}

std::string nameText(const Subtotal& sum)
{
    return sum.name.empty() ? "(none)" : shown(sum.name);
}

Json subtotalJson(const Subtotal& sum, By by)
{
    Json json{{wordOf(by), sum.name}, {"groups", sum.groups}};
    addNumber(json, "watts", sum.watts);
    if (by == By::rail)
        addNumber(json, "amperes", sum.amperes);
    else
        addNumber(json, "offchipWatts", sum.offchipWatts);
    return json;
}

} // namespace

By byWord(const std::string& word)
{
    std::vector<std::string> known;
    for (const auto& [name, by] : kWords) {
        if (word == name)
            return by;
        known.emplace_back(name);
    }
    throw Error(
        fmt::format("--by {}: groups add up by {}{}", abbreviated(word), orList(known), suggestion(word, known)));
}

std::string subtotalsTable(const Estimate& estimate, const SubtotalsWish& wish)
{
    const bool rails = wish.by == By::rail;
    std::string head = wordOf(wish.by);
    head.front() = static_cast<char>(head.front() - 'a' + 'A');
    TextTable table({head, "Groups", "Dynamic", "Share", rails ? "Current" : "Off chip"});
    for (const Subtotal& sum : wished(estimate, wish))
        table.row({nameText(sum), std::to_string(sum.groups), si(sum.watts, "W"), shareText(sum.watts, estimate),
                   rails                     ? si(sum.amperes, "A")
                   : sum.offchipWatts != 0.0 ? si(sum.offchipWatts, "W")
                                             : ""});
    table.rule();
    table.row({"All groups", std::to_string(estimate.groups.size()), si(estimate.dynamicWatts, "W"), "", ""});
    return table.text();
}

std::string subtotalsCsv(const Estimate& estimate, const SubtotalsWish& wish)
{
    const bool rails = wish.by == By::rail;
    std::string text = fmt::format("{},groups,dynamic_w,{}\n", wordOf(wish.by), rails ? "dynamic_a" : "offchip_w");
    for (const Subtotal& sum : wished(estimate, wish))
        text += fmt::format("{},{},{},{}\n", escapedCsv(sum.name), sum.groups, sum.watts,
                            rails ? sum.amperes : sum.offchipWatts);
    return text;
}

Json subtotalsJson(const Estimate& estimate, const SubtotalsWish& wish)
{
    Json json{{"format", kJsonFormat}, {"name", estimate.design.name}, {"by", wordOf(wish.by)}};
    addNumber(json, "dynamicWatts", estimate.dynamicWatts);
    json["subtotals"] = Json::array();
    for (const Subtotal& sum : wished(estimate, wish))
        json["subtotals"].push_back(subtotalJson(sum, wish.by));
    return json;
}

bool hasHierarchy(const Estimate& estimate)
{
    return std::any_of(estimate.groups.begin(), estimate.groups.end(),
                       [](const GroupResult& group) { return !group.in.empty(); });
}

Json hierarchyJson(const Estimate& estimate)
{
    Json list = Json::array();
    if (!hasHierarchy(estimate))
        return list;
    for (const Subtotal& sum : subtotals(estimate, By::in))
        list.push_back(subtotalJson(sum, By::in));
    return list;
}

std::string hierarchyTable(const Estimate& estimate)
{
    constexpr std::size_t indent = 2;
    TextTable table({"In", "Groups", "Dynamic", "Share"});
    for (const Subtotal& sum : subtotals(estimate, By::in)) {
        const std::string name = nameText(sum);
        table.row({std::string(indent * sum.depth, ' ') + name.substr(sum.depth == 0 ? 0 : name.rfind('/') + 1),
                   std::to_string(sum.groups), si(sum.watts, "W"), shareText(sum.watts, estimate)});
    }
    return table.text();
}

} // namespace zelm::host
