#include "host/estimate/Combination.h"

#include "host/blocks/LegalWords.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace zelm::host {

namespace {

// Whether the group's formulas find the row, and don't miss another for it, with another value in one input.
bool finds(const Running& group, const MissingRow& row, const ZelmCellInfo& changed, const Value& value)
{
    const auto instance = group.block->create();
    for (const ZelmCellInfo& cell : group.block->cells) {
        if (group.isSet(cell))
            instance->set(cell, group.instance->get(cell));
    }
    instance->set(changed, value);
    const LookUpMisses misses;
    try {
        instance->calculate();
    } catch (const std::exception&) { // a formula that can't do without the row
        return false;
    }
    const std::vector<MissingRow> rows = group.block->missingRows(misses);
    return rows.size() < group.missingRows.size() && std::find(rows.begin(), rows.end(), row) == rows.end();
}

} // namespace

std::string combinationWithout(const Running& group, const MissingRow& row)
{
    std::vector<std::string> inputs;
    for (const ZelmCellInfo& cell : group.block->cells) {
        if (cell.kind != ZelmCellInfo::Kind::userInput)
            continue;
        const Value given = group.instance->get(cell);
        const std::vector<Value> others = legalValues(*group.block, cell);
        if (std::any_of(others.begin(), others.end(),
                        [&](const Value& other) { return other != given && finds(group, row, cell, other); }))
            inputs.push_back(fmt::format("{} {}", cell.name, valueText(given)));
    }
    return fmt::format("{}", fmt::join(inputs, ", "));
}

} // namespace zelm::host
