#include "host/Running.h"

#include "host/Catalogue.h"
#include "host/IoBank.h"
#include "host/LegalWords.h"
#include "host/RollUp.h"

#include <fmt/format.h>

#include <algorithm>

namespace zelm::host {

namespace {

using Kind = ZelmCellInfo::Kind;
using Type = ZelmCellInfo::Type;
using Origin = InputValue::Origin;

// The rail whose voltage an input takes: the one of the cell's own name, or the one that the roll-up tells.
std::string railOf(const Block& block, const ZelmCellInfo& cell)
{
    for (const RailInput& alias : railInputs()) {
        if (alias.block == block.name && alias.cell == cell.name)
            return std::string(alias.rail);
    }
    return std::string(cell.name);
}

bool takesVolts(const ZelmCellInfo& cell)
{
    return cell.kind == Kind::userInput && cell.type == Type::real && cell.unit == "V";
}

Running make(const Block& block, const Group& group, const std::string& name)
{
    Running running;
    running.name = name;
    running.block = &block;
    running.count = group.count;
    running.instance = block.create();
    for (const auto& [cellName, value] : group.inputs) {
        const ZelmCellInfo* cell = block.findCell(cellName);
        if (cell && cell->kind == Kind::userInput)
            running.set(*cell, value, Origin::design);
    }
    return running;
}

void applyRails(Running& group, const RailVolts& rails)
{
    for (const ZelmCellInfo& cell : group.block->cells) {
        if (!takesVolts(cell) || group.isSet(cell.name))
            continue;
        if (const auto known = rails.find(railOf(*group.block, cell)))
            group.set(cell, known->volts, known->origin);
    }
}

void calculate(Running& group)
{
    group.block->load();
    const LookUpMisses misses;
    group.instance->calculate();
    group.missingRows = group.block->missingRows(misses);
}

// Every output of a clock's accounting is an input of the same name where its power is estimated.
void carryClock(const Running& clock, Running& fed, std::vector<Carried>& carried)
{
    for (const ZelmCellInfo& from : clock.block->cells) {
        const ZelmCellInfo* to = fed.block->findCell(from.name);
        if (from.kind != Kind::modelOutput || !to || to->kind != Kind::userInput || fed.isSet(from.name))
            continue;
        const Value value = clock.instance->get(from);
        fed.set(*to, value, Origin::carried);
        carried.push_back(
            {fmt::format("{}.{}", clock.name, from.name), fmt::format("{}.{}", fed.name, from.name), valueText(value)});
    }
}

// A clock net shares the device with the sites that the catalogue counts.
void carrySites(Running& clock, const ResolvedDevice& device, std::vector<Carried>& carried)
{
    static constexpr std::pair<const char*, const char*> sites[] = {
        {"AVAIL_BRAMS", "BRAM"}, {"AVAIL_DSPS", "DSP"}, {"AVAIL_FFS", "FF"}, {"AVAIL_PLAMS", "PLAM"}};
    for (const auto& [cellName, resource] : sites) {
        const auto found = device.resources.find(resource);
        if (found == device.resources.end() || clock.isSet(cellName))
            continue;
        clock.set(clock.block->cell(cellName), found->second, Origin::carried);
        carried.push_back({fmt::format("{}.{}", device.name, resource), fmt::format("{}.{}", clock.name, cellName),
                           std::to_string(found->second)});
    }
}

// The inputs that name the device, each in the words of its own data: external name, die, or internal name.
void carryDevice(Running& group, const ResolvedDevice& device, std::vector<Carried>& carried)
{
    for (const char* name : {"DEVICE", "INTERNAL_DEVICE_NAME"}) {
        const ZelmCellInfo* cell = group.block->findCell(name);
        if (!cell || cell->kind != Kind::userInput || group.isSet(name))
            continue;
        const std::vector<std::string> words = legalWords(*group.block, *cell);
        for (const std::string& word : device.names) {
            if (std::find(words.begin(), words.end(), word) == words.end())
                continue;
            group.set(*cell, word, Origin::carried);
            carried.push_back({"device", fmt::format("{}.{}", group.name, name), word});
            break;
        }
    }
    // Transceivers write speed grade 2 as -2.
    const ZelmCellInfo* cell = group.block->findCell("SPEEDGRADE");
    if (cell && !group.isSet("SPEEDGRADE") && device.speedGrade > 0) {
        group.set(*cell, -device.speedGrade, Origin::carried);
        carried.push_back({"device", fmt::format("{}.SPEEDGRADE", group.name), std::to_string(-device.speedGrade)});
    }
}

} // namespace

RailVolts::RailVolts(const Design& design, const ResolvedDevice* device)
{
    if (device) {
        // The static power model finds a rail's nominal voltage by the device's grades when it is pulled.
        const Block& block = zelm::host::block("Static");
        block.load();
        const auto instance = block.create();
        for (const auto& [cell, word] : device->staticInputs)
            instance->set(block.cell(cell), word);
        for (const std::string& rail : railNames()) {
            const ZelmCellInfo& cell = block.cell(rail);
            instance->pull(cell);
            const Value value = instance->get(cell);
            if (const float* volts = std::get_if<float>(&value); volts && *volts > 0.0f)
                m_known[rail] = {*volts, Origin::device};
        }
    }
    for (const auto& [rail, volts] : design.rails)
        m_known[rail] = {volts, Origin::rails};
}

std::optional<RailVolts::Known> RailVolts::find(const std::string& rail) const
{
    const auto found = m_known.find(rail);
    return found == m_known.end() ? std::nullopt : std::optional(found->second);
}

std::optional<double> RailVolts::volts(const std::string& rail) const
{
    const auto known = find(rail);
    return known ? std::optional(static_cast<double>(known->volts)) : std::nullopt;
}

std::vector<std::string> railNames()
{
    std::vector<std::string> names;
    for (const ZelmCellInfo& cell : block("Static").cells) {
        if (takesVolts(cell))
            names.emplace_back(cell.name);
    }
    return names;
}

void Running::set(const ZelmCellInfo& cell, const Value& value, Origin origin)
{
    instance->set(cell, value);
    origins[std::string(cell.name)] = origin;
}

bool Running::isSet(std::string_view cell) const
{
    return origins.contains(cell);
}

Value Running::get(std::string_view cell) const
{
    return instance->get(block->cell(cell));
}

int Running::whole(std::string_view cell) const
{
    const Value value = get(cell);
    const int* number = std::get_if<int>(&value);
    return number ? *number : 0;
}

std::string Running::text(std::string_view cell) const
{
    const Value value = get(cell);
    const std::string* words = std::get_if<std::string>(&value);
    return words ? *words : std::string();
}

Origin Running::originOf(std::string_view cell) const
{
    const auto found = origins.find(cell);
    return found == origins.end() ? Origin::byDefault : found->second;
}

const ZelmCellInfo* Running::railInput(const std::string& rail) const
{
    for (const ZelmCellInfo& cell : block->cells) {
        if (takesVolts(cell) && railOf(*block, cell) == rail)
            return &cell;
    }
    return nullptr;
}

std::vector<Running> start(const Design& design, const RailVolts& rails, const ResolvedDevice* device,
                           std::vector<Carried>& carried, std::vector<std::string>& warnings)
{
    std::vector<Running> all;
    for (const Group& group : design.groups) {
        const std::vector<const Block*> reached = inputBlocks(*group.block);
        const std::size_t first = all.size();
        for (const Block* block : reached) {
            const bool own = block == reached.front();
            Running running = make(*block, group, own ? group.name : fmt::format("{} ({})", group.name, block->title));
            if (own && device && reached.size() > 1)
                carrySites(running, *device, carried);
            if (device)
                carryDevice(running, *device, carried);
            if (!own)
                carryClock(all[first], running, carried);
            setBankVoltage(running, rails, warnings);
            applyRails(running, rails);
            calculate(running);
            all.push_back(std::move(running));
        }
    }
    return all;
}

} // namespace zelm::host
