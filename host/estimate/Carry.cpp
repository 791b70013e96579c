#include "host/estimate/Carry.h"

#include "host/blocks/IoStandards.h"
#include "host/blocks/Legal.h"
#include "host/blocks/Rails.h"
#include "host/blocks/RollUp.h"
#include "host/blocks/Uses.h"

#include "framework/ZelmUnset.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>

namespace zelm::host {

namespace {

using Kind = ZelmCellInfo::Kind;

// Sets inputs of a group to what is carried into them, and tells of it.
class CarriedInto {
public:
    CarriedInto(Running& group, std::vector<Carried>& told) : m_group(&group), m_told(&told) {}

    const Running& group() const
    {
        return *m_group;
    }
    void set(const ZelmCellInfo& cell, const Carried::End& from, const Value& value)
    {
        m_group->set(cell, value, Origin::carried);
        if (!m_name)
            m_name = endOf(m_group->name).name;
        m_told->push_back({from, {m_name, cell.name}, value});
    }

private:
    Running* m_group;
    std::vector<Carried>* m_told;
    std::shared_ptr<const std::string> m_name; // as soon as something is carried
};

// ---- Rails ----

void applyRails(Running& group, const RailVolts& rails)
{
    for (const ZelmCellInfo* cell : group.block->voltages) {
        if (group.isSet(*cell))
            continue;
        if (const auto known = rails.find(cell->legal.rail))
            group.set(*cell, known->volts, known->origin);
    }
}

// The directions in which a group uses its pins; an unknown direction counts as both.
bool drives(const std::string& direction)
{
    return direction != "INPUT" && direction != "BIDI_INPUT";
}

bool receives(const std::string& direction)
{
    return direction != "OUTPUT" && direction != "BIDI_OUTPUT";
}

// The pins of one buffer: a pair in a direction in use takes two.
int pinsPerBuffer(const Running& group)
{
    const std::string& direction = group.text("IO_DIRECTION");
    const bool pair = (drives(direction) && isPair(group.text("OUTPUT_IO_STANDARD"))) ||
                      (receives(direction) && isPair(group.text("INPUT_IO_STANDARD")));
    return pair ? 2 : 1;
}

void setBankVoltage(Running& group, const RailVolts& rails, std::vector<std::string>& warnings)
{
    const BankKind* kind = bankKindOf(group.block->name);
    if (!kind)
        return;
    const std::string_view cellName = kind->volts;
    const ZelmCellInfo& cell = group.block->cell(cellName);
    const auto word = [&](std::string_view input) {
        const ZelmCellInfo& info = group.block->cell(input);
        return group.isSet(input) ? group.text(input) : constantDefault(info);
    };
    const std::string direction = word("IO_DIRECTION");
    std::optional<float> wanted;
    const auto check = [&](const char* direction_, std::string_view input) {
        const std::string name = word(input);
        const auto& all = ioStandards();
        const auto standard = std::find_if(all.begin(), all.end(), [&](const IoStandard& s) {
            return s.name == name && s.bank == group.block->name && s.direction == direction_;
        });
        if (standard == all.end()) {
            warnings.push_back(
                fmt::format("group \"{}\": there is no {} standard {} in {} banks, so it draws nothing{}", group.name,
                            direction_, name, group.block->name, " (zelm standards lists them)"));
            return;
        }
        if (isUnset(standard->volts))
            return;
        if (!wanted && !group.isSet(cellName)) {
            const auto rail = rails.find(zelm::host::bankRail(standard->volts));
            group.set(cell, rail ? rail->volts : standard->volts, rail ? rail->origin : Origin::carried);
        }
        wanted = standard->volts;
        constexpr float tolerance = 0.05f; // of the nominal, as bank supplies are specified
        const Value own = group.get(cellName);
        const float volts = std::holds_alternative<float>(own) ? std::get<float>(own) : standard->volts;
        if (std::fabs(volts - standard->volts) > tolerance * standard->volts)
            warnings.push_back(fmt::format("group \"{}\": {} at {:g} V doesn't fit {}, which is made for {:g} V",
                                           group.name, cellName, volts, name, standard->volts));
    };
    if (drives(direction))
        check("output", "OUTPUT_IO_STANDARD");
    if (receives(direction))
        check("input", "INPUT_IO_STANDARD");
}

// ---- Clock domains ----

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

// What a group loads its clock with, by one row of loads.
std::int64_t loadOf(const Group& group, const ClockLoad& load)
{
    return isOfKind(group, load) ? std::int64_t{group.count} * std::get<int>(inputOf(group, load.cell)) * load.each : 0;
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
            if (const std::int64_t number = loadOf(group, load); number != 0)
                loads[load.load] += number;
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

void carryCount(CarriedInto& clock, std::string_view cellName, std::int64_t count, const Carried::End& from)
{
    const ZelmCellInfo& cell = clock.group().block->cell(cellName);
    if (clock.group().isSet(cell))
        return;
    constexpr std::int64_t most = std::numeric_limits<int>::max() - 1;
    clock.set(cell, from, static_cast<int>(std::clamp<std::int64_t>(count, 0, most)));
}

// Gives a group the frequency of the clock that it names, on all its clock inputs that the design leaves unset.
void carryFrequency(const Design& design, const Group& group, CarriedInto& into)
{
    if (group.clock.empty())
        return;
    const auto clock = std::find_if(design.groups.begin(), design.groups.end(),
                                    [&](const Group& other) { return other.name == group.clock; });
    if (clock == design.groups.end())
        return;
    for (const ClockInput& input : clockInputs()) {
        if (input.block == group.block->name && !into.group().isSet(input.cell))
            into.set(group.block->cell(input.cell), endOf(clock->name, kFrequency),
                     inputOf(*clock, block("CleClk").cell(kFrequency)));
    }
}

// Gives a clock's accounting the loads of the groups that name it, where the design leaves them unset. A clock that no
// group names keeps what it has.
void carryLoads(const Design& design, const Group& clock, CarriedInto& into)
{
    if (clock.block->name != "Clock" || std::none_of(design.groups.begin(), design.groups.end(),
                                                     [&](const Group& group) { return group.clock == clock.name; }))
        return;
    const Carried::End from = endOf(fmt::format("groups on {}", clock.name));
    for (const auto& [cell, number] : loadsOf(design, clock))
        carryCount(into, cell, number, from);
    const float perSite = std::get<float>(inputOf(clock, "FANOUT_PER_SITE"));
    const double fanout = static_cast<double>(sitesOf(into.group())) * static_cast<double>(perSite);
    carryCount(into, "FANOUT", std::llround(fanout), from);
}

// ---- The device and its clocks ----

// Every output of a clock's accounting is an input of the same name where its power is estimated.
void carryClock(const Running& clock, CarriedInto& fed)
{
    const auto name = endOf(clock.name).name;
    for (const ZelmCellInfo& from : clock.block->cells) {
        if (from.kind != Kind::modelOutput)
            continue;
        const ZelmCellInfo* to = fed.group().block->findCell(from.name);
        if (to && to->kind == Kind::userInput && !fed.group().isSet(*to))
            fed.set(*to, {name, from.name}, clock.instance->get(from));
    }
}

// A clock net shares the device with the sites that the catalogue counts.
void carrySites(CarriedInto& clock, const ResolvedDevice& device)
{
    const auto name = endOf(device.name).name;
    for (const auto& [cellName, resource] : clockSites()) {
        const auto found = device.resources.find(std::string(resource));
        if (found != device.resources.end() && !clock.group().isSet(cellName))
            clock.set(clock.group().block->cell(cellName), {name, resource}, found->second);
    }
}

// The inputs that name the device, each in the words of its own data: external name, die, or internal name.
void carryDevice(CarriedInto& into, const ResolvedDevice& device)
{
    static const Carried::End from = endOf("device");
    const Block& block = *into.group().block;
    for (const ZelmCellInfo* cell : block.deviceNames) {
        if (into.group().isSet(*cell))
            continue;
        const std::vector<std::string> words = legalWords(block, *cell);
        const auto word = std::find_first_of(device.names.begin(), device.names.end(), words.begin(), words.end());
        if (word != device.names.end())
            into.set(*cell, from, *word);
    }
    // Transceivers write speed grade 2 as -2.
    for (const ZelmCellInfo* cell : block.speedGrades) {
        if (!into.group().isSet(*cell) && device.speedGrade > 0)
            into.set(*cell, from, -device.speedGrade);
    }
}

// ---- What groups use ----

// How many units of a cell a group has in all; without a cell, how many instances. Counts of counts outgrow an int.
std::int64_t units(const Running& group, std::string_view cell)
{
    const std::int64_t instances = group.count;
    return cell.empty() ? instances : instances * group.whole(cell);
}

std::int64_t roundedUp(std::int64_t units, int perCount)
{
    return (units + perCount - 1) / perCount;
}

// What a cell can hold of a count: the largest int stands for an unset one.
int forCell(std::int64_t count)
{
    constexpr std::int64_t most = std::numeric_limits<int>::max() - 1;
    return static_cast<int>(std::clamp<std::int64_t>(count, 0, most));
}

// The pins of one bank, by the device's own pins and banks.
int pinsPerBank(const ResolvedDevice& device, std::string_view bank)
{
    constexpr int typical = 54;
    const auto count = [&](const char* ending) {
        const auto found = device.resources.find(std::string(bank) + ending);
        return found == device.resources.end() ? 0 : found->second;
    };
    const int banks = count("_BANK");
    return banks > 0 && count("_IO") >= banks ? count("_IO") / banks : typical;
}

std::string bankCell(std::string_view rail, const BankKind& kind)
{
    return fmt::format("USED_{}_{}_BANKS", rail, kind.words);
}

// The static power model's counts of banks of any kind.
const std::vector<std::string_view>& bankCells()
{
    static const std::vector<std::string_view> all = [] {
        std::vector<std::string_view> cells;
        for (const BankKind& kind : bankKinds()) {
            const std::string ending = fmt::format("{}_BANKS", kind.words);
            for (const ZelmCellInfo& cell : block("Static").cells) {
                if (cell.kind == Kind::userInput && cell.name.ends_with(ending))
                    cells.push_back(cell.name);
            }
        }
        return cells;
    }();
    return all;
}

} // namespace

Carried::End endOf(std::string_view name, std::string_view cell)
{
    return {std::make_shared<const std::string>(name), cell};
}

RailVolts::RailVolts(const Design& design, const ResolvedDevice* device) : m_known(railNames().size())
{
    if (device) {
        for (const auto& [rail, volts] : device->volts)
            m_known[placeOfRail(rail).value()] = {volts, Origin::device};
    }
    for (const auto& [rail, volts] : design.rails)
        m_known[placeOfRail(rail).value()] = {volts, Origin::rails};
}

std::optional<RailVolts::Known> RailVolts::find(std::string_view rail) const
{
    const auto place = placeOfRail(rail);
    return place ? m_known[*place] : std::nullopt;
}

std::optional<double> RailVolts::volts(std::string_view rail) const
{
    const auto known = find(rail);
    return known ? std::optional(static_cast<double>(known->volts)) : std::nullopt;
}

StartedGroup start(const Design& design, const Group& group, const RailVolts& rails, const ResolvedDevice* device)
{
    StartedGroup started;
    const std::vector<const Block*> reached = inputBlocks(*group.block);
    started.blocks.reserve(reached.size());
    for (const Block* block : reached) {
        const bool own = block == reached.front();
        Running running(*block, group, own ? group.name : fmt::format("{} ({})", group.name, block->title));
        CarriedInto into(running, started.carried);
        if (own) {
            carryFrequency(design, group, into);
            carryLoads(design, group, into);
        }
        if (own && device && reached.size() > 1)
            carrySites(into, *device);
        if (device)
            carryDevice(into, *device);
        if (!own)
            carryClock(started.blocks.front(), into);
        setBankVoltage(running, rails, started.warnings);
        applyRails(running, rails);
        running.calculate();
        started.blocks.push_back(std::move(running));
    }
    return started;
}

std::vector<std::size_t> carriedInto(const Design& design, const Group& before, const Group& after)
{
    const bool isClock = before.block->name == "Clock";
    const auto loadsAsBefore = [&](const ClockLoad& load) { return loadOf(before, load) == loadOf(after, load); };
    const bool otherLoads =
        before.clock != after.clock || !std::all_of(clockLoads().begin(), clockLoads().end(), loadsAsBefore);
    if (!isClock && !otherLoads)
        return {};
    std::vector<std::size_t> reached;
    for (std::size_t i = 0; i < design.groups.size(); ++i) {
        const Group& other = design.groups[i];
        const bool isItsClock = !other.name.empty() && (other.name == before.clock || other.name == after.clock);
        if ((isClock && other.clock == before.name) || (otherLoads && isItsClock))
            reached.push_back(i);
    }
    return reached;
}

UsedCounts usedCounts(const RunningGroups& groups, const ResolvedDevice& device, const Design& design)
{
    UsedCounts used;
    for (const StaticCount& count : staticCounts()) {
        std::int64_t sum = 0;
        for (const Running* group : groups.of(count.block))
            sum += units(*group, count.cell);
        used[count.staticCell] = forCell(roundedUp(sum, count.perCount));
    }
    for (const std::string_view cell : bankCells())
        used[cell] = 0;
    for (const BankKind& kind : bankKinds()) {
        std::map<std::string_view, std::int64_t> pins;
        for (const Running* group : groups.of(kind.block))
            pins[group->bankRail()] += std::int64_t{group->count} * pinsPerBuffer(*group);
        for (const auto& [rail, number] : pins) {
            if (const ZelmCellInfo* cell = block("Static").findCell(bankCell(rail, kind)))
                used[cell->name] = forCell(roundedUp(number, pinsPerBank(device, kind.words)));
        }
    }
    for (const auto& [cell, value] : design.staticInputs)
        used.erase(cell);
    return used;
}

std::vector<Utilisation> utilisation(const RunningGroups& groups, const ResolvedDevice& device)
{
    std::vector<Utilisation> result;
    for (const ResourceUse& use : resourceUses()) {
        const auto available = device.resources.find(std::string(use.resource));
        if (available == device.resources.end())
            continue;
        std::int64_t sum = 0;
        for (const Running* group : groups.of(use.block)) {
            if (use.kind.empty() || group->text(use.kind).starts_with(use.word))
                sum += units(*group, use.cell) * use.each * (bankKindOf(use.block) ? pinsPerBuffer(*group) : 1);
        }
        auto entry = std::find_if(result.begin(), result.end(),
                                  [&](const Utilisation& known) { return known.resource == use.resource; });
        if (entry == result.end())
            entry = result.insert(entry, {std::string(use.resource), 0.0, static_cast<double>(available->second)});
        entry->used += static_cast<double>(roundedUp(sum, use.perUnit));
    }
    std::erase_if(result, [](const Utilisation& use) { return use.used == 0.0 && use.available == 0.0; });
    return result;
}

} // namespace zelm::host
