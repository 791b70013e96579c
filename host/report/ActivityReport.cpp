#include "host/report/ActivityReport.h"

#include "host/base/Json.h"
#include "host/base/Text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace zelm::host {

namespace {

double netShare(const ActivityImport& activity)
{
    return activity.nets == 0 ? 0.0 : static_cast<double>(activity.annotatedNets) / static_cast<double>(activity.nets);
}

} // namespace

std::string activityTable(const ActivityImport& activity)
{
    TextTable table({"Group", "Scope", "Nets", "Toggles", "Cycles", "By", "Set"});
    std::size_t set = 0;
    for (const GroupActivity& group : activity.groups) {
        std::vector<std::string> inputs;
        for (const auto& [cell, value] : group.inputs)
            inputs.push_back(fmt::format("{} {:.4g}", cell, value));
        set += inputs.empty() ? 0u : 1u;
        if (inputs.empty())
            table.row({group.group, group.scope.empty() ? "-" : group.scope, "", "", "", "", "default: " + group.note});
        else
            table.row({group.group, group.scope.empty() ? "-" : group.scope, fmt::format("{}", group.nets),
                       fmt::format("{:.0f}", group.toggles), fmt::format("{:.6g}", group.cycles), group.clock,
                       fmt::format("{}", fmt::join(inputs, ", "))});
    }
    return fmt::format(
        "{}\n{} of {} groups with inputs of activity were set, from {} of {} nets ({:.1f} %) in {}, over "
        "{}\n",
        table.text(), set, activity.groups.size(), activity.annotatedNets, activity.nets, 100.0 * netShare(activity),
        activity.scope.empty() ? "the whole dump" : activity.scope, si(activity.seconds, "s"));
}

Json activityJson(const ActivityImport& activity)
{
    Json json{{"format", kJsonFormat}, {"scope", validUtf8(activity.scope)}};
    addNumber(json, "seconds", activity.seconds);
    json["nets"] = activity.nets;
    json["annotatedNets"] = activity.annotatedNets;
    addNumber(json, "netShare", netShare(activity));
    json["groups"] = Json::array();
    for (const GroupActivity& group : activity.groups) {
        Json one{
            {"name", group.group}, {"block", group.block}, {"scope", validUtf8(group.scope)}, {"clock", group.clock}};
        addNumber(one, "cycles", group.cycles);
        one["nets"] = group.nets;
        addNumber(one, "bits", group.bits);
        addNumber(one, "toggles", group.toggles);
        one["inputs"] = Json::object();
        for (const auto& [cell, value] : group.inputs)
            addNumber(one["inputs"], cell, value);
        one["kept"] = group.kept;
        if (!group.note.empty())
            one["note"] = group.note;
        json["groups"].push_back(std::move(one));
    }
    return json;
}

} // namespace zelm::host
