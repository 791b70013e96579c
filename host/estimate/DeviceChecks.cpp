#include "host/estimate/DeviceChecks.h"

#include "host/blocks/Rails.h"
#include "host/blocks/Uses.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>

namespace zelm::host {

namespace {

using Said = std::vector<std::string>;

// ---- Without a device ----

// Limits that would seem kept, and settings that enter nothing.
Said needingADevice(const Design& design)
{
    Said fields;
    const auto add = [&](bool given, const char* field) {
        if (given)
            fields.emplace_back(field);
    };
    add(design.environment.junction.has_value(), "environment.junctionTemperature");
    add(design.environment.ambient.has_value(), "environment.ambientTemperature");
    add(design.environment.junctionLimit.has_value(), "environment.junctionLimit");
    add(design.budgets.junction.has_value(), "budgets.junctionTemperature");
    add(!design.budgets.judgedAt.empty(), "budgets.judgedAt");
    add(!design.staticInputs.empty(), "static");
    return fields;
}

// Totals and currents that are held against limits, but lack the static part.
Said heldAgainstDynamicPower(const Design& design)
{
    Said fields;
    if (design.budgets.totalPower)
        fields.emplace_back("budgets.totalPower");
    if (!design.budgets.rails.empty())
        fields.emplace_back("budgets.rails");
    if (!design.regulators.empty())
        fields.emplace_back("regulators");
    return fields;
}

// ---- Other devices ----

void checkNames(const Running& group, const ResolvedDevice& device, Said& warnings)
{
    for (const ZelmCellInfo* cell : group.block->deviceNames) {
        if (group.originOf(*cell) == Origin::design &&
            std::find(device.names.begin(), device.names.end(), group.text(cell->name)) == device.names.end())
            warnings.push_back(fmt::format("group \"{}\": {} is {}, and the design's device is {}; leave {} out",
                                           group.name, cell->name, group.text(cell->name), device.name, cell->name));
    }
    for (const ZelmCellInfo* cell : group.block->speedGrades) {
        if (group.originOf(*cell) == Origin::design && device.speedGrade > 0 &&
            group.whole(cell->name) != -device.speedGrade)
            warnings.push_back(fmt::format("group \"{}\": {} is {}, and the device's is {}; leave {} out", group.name,
                                           cell->name, group.whole(cell->name), -device.speedGrade, cell->name));
    }
}

void checkRails(const Design& design, const ResolvedDevice& device, Said& warnings)
{
    for (const auto& [rail, volts] : design.rails) {
        if (!hasRail(device.name, rail))
            warnings.push_back(fmt::format("{}: {} has no such rail", design.source.at("rails." + rail), device.name));
    }
}

// ---- More than there is ----

int resourceOf(const ResolvedDevice& device, std::string_view name)
{
    const auto found = device.resources.find(std::string(name));
    return found == device.resources.end() ? 0 : found->second;
}

// The resource that a used count of the static power model is of; empty if the catalogue doesn't know it.
std::string_view resourceOfCount(std::string_view cell)
{
    if (cell == "USED_ADC_CORE")
        return "ADC";
    if (cell == "USED_DAC_CORE")
        return "DAC";
    for (const StaticCount& count : staticCounts()) {
        for (const ResourceUse& use : resourceUses()) {
            if (count.staticCell == cell && use.block == count.block && use.cell == count.cell)
                return use.resource;
        }
    }
    return "";
}

void checkStaticCounts(const Design& design, const ResolvedDevice& device, Said& warnings)
{
    for (const auto& [cell, value] : design.staticInputs) {
        const std::string_view resource = resourceOfCount(cell);
        const int* count = std::get_if<int>(&value);
        if (const int there = resourceOf(device, resource); !resource.empty() && count && *count > there)
            warnings.push_back(fmt::format("{}: {} is more than the {} {} of {}", design.source.at("static." + cell),
                                           *count, there, resource, device.name));
    }
}

// Cores and memories of a processing system: the static power model's defaults are all that there are.
void checkProcessors(const Running& system, Said& warnings)
{
    for (const StaticCount& count : staticCounts()) {
        if (count.block != system.block->name)
            continue;
        const std::string all = constantDefault(block("Static").cell(count.staticCell));
        int most = 0;
        std::from_chars(all.data(), all.data() + all.size(), most);
        if (system.whole(count.cell) > most)
            warnings.push_back(fmt::format("group \"{}\": {} {} is more than the {} of a processing system",
                                           system.name, count.cell, system.whole(count.cell), most));
    }
}

// What the catalogue has no count of.
void checkCounts(const RunningGroups& groups, const ResolvedDevice& device, Said& warnings)
{
    constexpr double iosOfPhy = 6.0;
    constexpr double registersOfPin = 3.0; // in, out and three-state
    const auto countOf = [&](std::string_view block) {
        double count = 0.0;
        for (const Running* group : groups.of(block))
            count += group->count;
        return count;
    };
    const double monitors = countOf("Sysmon");
    const double nibbles = countOf("Kelp");
    const double registers = countOf("Iologic");
    if (monitors > 1)
        warnings.push_back(fmt::format("the design has {:g} system monitors, and {} has one", monitors, device.name));
    if (const int pins = resourceOf(device, "SELV_IO"); nibbles * iosOfPhy > pins)
        warnings.push_back(fmt::format("the design has {:g} nibbles of I/O PHY, and the {} SELV_IO of {} are {:g}",
                                       nibbles, pins, device.name, pins / iosOfPhy));
    if (const int pins = resourceOf(device, "SELV_IO") + resourceOf(device, "NALT_IO");
        registers > registersOfPin * pins)
        warnings.push_back(fmt::format("the design has {:g} I/O registers, and the {} pins of {} have {:g}", registers,
                                       pins, device.name, registersOfPin * pins));
}

} // namespace

std::vector<std::string> warningsOfEnvironment(const Design& design)
{
    constexpr double boils = 125.0; // nothing around a device is hotter than its junction may be
    Said warnings;
    if (design.environment.ambient && *design.environment.ambient > boils)
        warnings.push_back(fmt::format("{}: {:g} degrees Celsius: kelvin?",
                                       design.source.at("environment.ambientTemperature"),
                                       *design.environment.ambient));
    return warnings;
}

std::vector<std::string> warningsOfDevice(const Design& design, const RunningGroups& groups,
                                          const ResolvedDevice* device)
{
    Said warnings;
    for (const Running* group : groups.all()) {
        if (group->block->name == "Yond" && group->count > 0)
            checkProcessors(*group, warnings);
        if (device)
            checkNames(*group, *device, warnings);
    }
    if (!device) {
        if (const Said fields = needingADevice(design); !fields.empty())
            warnings.push_back(fmt::format("without a device there is no static power and no junction temperature: {} "
                                           "count{} for nothing",
                                           fmt::join(fields, ", "), fields.size() == 1 ? "s" : ""));
        if (const Said fields = heldAgainstDynamicPower(design); !fields.empty())
            warnings.push_back(fmt::format("without a device there is no static power: {} {} judged on dynamic power "
                                           "alone",
                                           fmt::join(fields, ", "), fields.size() == 1 ? "is" : "are"));
        return warnings;
    }
    checkRails(design, *device, warnings);
    checkStaticCounts(design, *device, warnings);
    checkCounts(groups, *device, warnings);
    return warnings;
}

} // namespace zelm::host
