#include "host/estimate/ClockDomains.h"

#include "host/blocks/Uses.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>

namespace zelm::host {

namespace {

constexpr std::string_view kFrequency = "CLOCK_FREQ"; // of a clock's group: slice clocking's and the network's

// An input as the design has it, or its default: a group that hasn't been calculated doesn't hold that yet.
Value inputOf(const Group& group, const ZelmCellInfo& cell)
{
    const Value* set = group.input(cell.name);
    return set ? *set : parseValue(cell, constantDefault(cell));
}

Value inputOf(const Group& group, std::string_view cell)
{
    return inputOf(group, group.block->cell(cell));
}

bool isOfKind(const Group& group, const ClockLoad& load)
{
    return load.block == group.block->name &&
           (load.kind.empty() || std::get<std::string>(inputOf(group, load.kind)).starts_with(load.word));
}

std::int64_t roundedUpBy(std::int64_t number, std::int64_t divisor)
{
    return (number + divisor - 1) / divisor;
}

// The loads of one of a clock's like nets, by input of the accounting.
std::map<std::string_view, std::int64_t> loadsOf(const Design& design, const Group& clock)
{
    std::map<std::string_view, std::int64_t> loads;
    for (const ClockLoad& load : clockLoads())
        loads[load.load] = 0;
    for (const Group& group : design.groups) {
        if (group.clock != clock.name)
            continue;
        for (const ClockLoad& load : clockLoads()) {
            if (isOfKind(group, load))
                loads[load.load] += std::int64_t{group.count} * std::get<int>(inputOf(group, load.cell)) * load.each;
        }
    }
    for (auto& [cell, number] : loads)
        number = roundedUpBy(number, std::max(clock.count, 1));
    return loads;
}

// The sites that a net reaches: half of a slice's sixteen registers, or eight LUTs that shift or store, share one;
// memories and DSP slices are sites of their own.
std::int64_t sitesOf(const Running& clock)
{
    constexpr std::int64_t perSlice = 8;
    const auto loads = [&](std::string_view cell) { return std::int64_t{clock.whole(cell)}; };
    return roundedUpBy(loads("FFS_USING_CLK"), perSlice) + roundedUpBy(loads("SRLS_USING_CLK"), perSlice) +
           roundedUpBy(loads("LUTRAMS_USING_CLK"), perSlice) + loads("BRAMS_USING_CLK") + loads("PLAMS_USING_CLK") +
           loads("DSPS_USING_CLK");
}

void carryCount(Running& clock, std::string_view cell, std::int64_t count, const std::string& from,
                std::vector<Carried>& carried)
{
    if (clock.isSet(cell))
        return;
    constexpr std::int64_t most = std::numeric_limits<int>::max() - 1;
    const int number = static_cast<int>(std::clamp<std::int64_t>(count, 0, most));
    clock.set(clock.block->cell(cell), number, Origin::carried);
    carried.push_back({from, fmt::format("{}.{}", clock.name, cell), std::to_string(number)});
}

} // namespace

void carryFrequency(const Design& design, const Group& group, Running& running, std::vector<Carried>& carried)
{
    const auto clock = std::find_if(design.groups.begin(), design.groups.end(),
                                    [&](const Group& other) { return other.name == group.clock; });
    if (group.clock.empty() || clock == design.groups.end())
        return;
    for (const ClockInput& input : clockInputs()) {
        if (input.block != running.block->name || running.isSet(input.cell))
            continue;
        const Value frequency = inputOf(*clock, block("CleClk").cell(kFrequency));
        running.set(running.block->cell(input.cell), frequency, Origin::carried);
        carried.push_back({fmt::format("{}.{}", clock->name, kFrequency),
                           fmt::format("{}.{}", running.name, input.cell), valueText(frequency)});
    }
}

void carryLoads(const Design& design, const Group& clock, Running& running, std::vector<Carried>& carried)
{
    const bool isNamed = std::any_of(design.groups.begin(), design.groups.end(),
                                     [&](const Group& group) { return group.clock == clock.name; });
    if (clock.block->name != "Clock" || !isNamed)
        return;
    const std::string from = fmt::format("groups on {}", clock.name);
    for (const auto& [cell, number] : loadsOf(design, clock))
        carryCount(running, cell, number, from, carried);
    const float perSite = std::get<float>(inputOf(clock, "FANOUT_PER_SITE"));
    const double fanout = static_cast<double>(sitesOf(running)) * static_cast<double>(perSite);
    carryCount(running, "FANOUT", std::llround(fanout), from, carried);
}

} // namespace zelm::host
