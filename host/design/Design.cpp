#include "host/design/Design.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/blocks/Legal.h"
#include "host/blocks/Rails.h"
#include "host/blocks/Uses.h"
#include "host/design/Fields.h"
#include "host/design/Include.h"
#include "host/design/Limits.h"
#include "host/design/Sections.h"

#include "framework/ZelmUnset.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

namespace zelm::host {

namespace {

constexpr double kMostOfReal = 3.4e38; // a float of the largest magnitude would be taken for an unset cell

// The two largest ints stand for an unset cell and for what is no number.
Range rangeOf(const ZelmCellInfo& cell)
{
    if (cell.type == ZelmCellInfo::Type::integer)
        return {std::numeric_limits<int>::min(), zelm::notANumberInt - 1, cell.unit};
    return {-kMostOfReal, kMostOfReal, cell.unit};
}

Value typedValue(const ZelmCellInfo& cell, const Distribution::Value& value)
{
    if (const auto* word = std::get_if<std::string>(&value))
        return *word;
    const double number = std::get<double>(value);
    return cell.type == ZelmCellInfo::Type::integer ? Value(static_cast<int>(number))
                                                    : Value(static_cast<float>(number));
}

// What an input may be must be legal at its ends; a normal distribution is cut where the legal numbers end.
Value uncertainValue(const Block& block, const ZelmCellInfo& cell, const Json& value, const Place& where)
{
    using Kind = Distribution::Kind;
    const bool isWord = cell.type == ZelmCellInfo::Type::text;
    Distribution all =
        isWord ? Fields::words(value, where)
               : Fields::distribution(value, where, rangeOf(cell), cell.type == ZelmCellInfo::Type::integer);
    const auto check = [&](const std::string& field, const Distribution::Value& end) {
        if (const auto illegal = whyIllegal(block, cell, typedValue(cell, end)))
            where.field(field).fail(*illegal);
    };
    if (all.kind != Kind::discrete && (cell.legal.kind == zelm::Legal::Kind::keys || !legalNumbers(cell).empty()))
        where.fail(fmt::format("{} takes {}: list what it may be, {{\"values\": [...], \"weights\": [...]}}", cell.name,
                               legalText(cell)));
    for (std::size_t i = 0; i < all.values.size(); ++i)
        check(fmt::format("values[{}]", i), all.values[i]);
    if (all.kind == Kind::uniform || all.kind == Kind::triangular) {
        check("low", all.low);
        check("high", all.high);
    }
    if (all.kind == Kind::normal) {
        check("mean", all.peak);
        const zelm::Legal& legal = cell.legal;
        all.low = std::max(all.low, legal.lowest);
        all.high = std::min(all.high, all.peak <= legal.usualHighest ? std::min(legal.highest, legal.usualHighest)
                                                                     : legal.highest);
    }
    where.note(all);
    return typedValue(cell, all.centre());
}

Value cellValue(const Block& block, const ZelmCellInfo& cell, const Json& value, const Place& where)
{
    if (isDistribution(value))
        return uncertainValue(block, cell, value, where);
    switch (cell.type) {
    case ZelmCellInfo::Type::text: {
        std::string word = Fields::word(value, where);
        if (zelm::isUnset(word))
            where.fail(fmt::format("\"{}\" is how an unset cell reads; leave the input out", word));
        return word;
    }
    case ZelmCellInfo::Type::integer:
        return static_cast<int>(Fields::whole(value, where, rangeOf(cell)));
    case ZelmCellInfo::Type::real:
        break;
    }
    return static_cast<float>(Fields::number(value, where, rangeOf(cell)));
}

constexpr OwnField kOwnFields[] = {
    {"DEVICE_NAME", "device.part"},         {"PROCESS", "device.process"},
    {"SPEED_GRADE", "device.speedGrade"},   {"VOLTAGE_GRADE", "device.voltageGrade"},
    {"POWER_SCREEN", "device.powerScreen"}, {"TEMP_GRADE", "device.temperatureGrade"},
    {"OVER_DRIVE", "device.overdrive"},     {"JUNCTION_TEMPERATURE", "environment.junctionTemperature"},
};

// The block among those that the group's inputs reach that has an input of that name.
const Block& blockWithInput(const std::vector<const Block*>& blocks, const std::string& name)
{
    for (const Block* block : blocks) {
        const ZelmCellInfo* cell = block->findCell(name);
        if (cell && cell->kind == ZelmCellInfo::Kind::userInput)
            return *block;
    }
    blocks.front()->input(name); // says what is wrong with the name
    return *blocks.front();
}

// What a value means: a word or number that isn't legal is an error, one that is unlikely a warning.
void judge(const Block& block, const ZelmCellInfo& cell, const Value& value, const Json& written, const Place& place,
           Reading& reading)
{
    const auto* text = written.get_ptr<const std::string*>();
    const bool computed = text && Value(*text) != value;
    const auto said = [&](const std::string& why) {
        return computed ? fmt::format("{}; it is written {}", why, quoted(written)) : why;
    };
    if (const auto illegal = whyIllegal(block, cell, value))
        place.fail(said(*illegal));
    if (const auto unlikely = whyUnlikely(cell, value))
        reading.warnings.push_back(place.say(said(*unlikely)));
}

std::vector<std::pair<std::string, Value>> readInputs(const Json* object, const std::vector<const Block*>& blocks,
                                                      const Place& where, Reading& reading)
{
    std::vector<std::pair<std::string, Value>> inputs;
    if (!object)
        return inputs;
    if (!object->is_object())
        where.fail(fmt::format("expected an object of inputs by cell name, found {}", Fields::describe(*object)));
    for (const auto& [name, value] : object->items()) {
        const Place place = where.field(name);
        const Block* block = nullptr;
        try {
            block = &blockWithInput(blocks, name);
        } catch (const Error& error) {
            place.fail(error.what());
        }
        const ZelmCellInfo& cell = block->input(name);
        inputs.emplace_back(name, cellValue(*block, cell, value, place));
        judge(*block, cell, inputs.back().second, value, place, reading);
    }
    return inputs;
}

// Parts of the hierarchy have names, and slashes between them.
void refuseBrokenPath(const std::string& in, const Place& where)
{
    constexpr std::size_t deepest = 16;
    if (in.empty())
        return;
    const std::vector<std::string> parts = split(in, '/');
    if (std::find(parts.begin(), parts.end(), "") != parts.end())
        where.fail(fmt::format("\"{}\" has a part without a name; expected names between slashes: datapath/fir", in));
    if (parts.size() > deepest)
        where.fail(fmt::format("\"{}\" is {} deep, at most {} are read", abbreviated(in), parts.size(), deepest));
}

bool isIndex(const std::string& name)
{
    return !name.empty() && name.find_first_not_of("0123456789") == std::string::npos;
}

void refuseUnknownClocks(const std::vector<Group>& groups, const Place& where)
{
    std::vector<std::string> clocks;
    for (const Group& group : groups) {
        if (group.block->name == "Clock")
            clocks.push_back(group.name);
    }
    for (std::size_t i = 0; i < groups.size(); ++i) {
        const std::string& clock = groups[i].clock;
        if (!clock.empty() && std::find(clocks.begin(), clocks.end(), clock) == clocks.end())
            where.element(i).field("clock").fail(
                fmt::format("no group of Clock is named \"{}\"{}", clock, suggestion(clock, clocks)));
    }
}

std::vector<Group> readGroups(const Json& value, Reading& reading)
{
    const Place where(reading, "groups");
    if (!value.is_array())
        where.fail(fmt::format("expected a list [...], found {}", Fields::describe(value)));
    std::vector<Group> groups;
    std::set<std::string> names;
    for (std::size_t i = 0; i < value.size(); ++i) {
        Group group = readGroup(value[i], i, reading);
        if (!names.insert(group.name).second)
            where.element(i).field("name").fail(
                fmt::format("two groups are named \"{}\"; give each its own name", abbreviated(group.name)));
        groups.push_back(std::move(group));
    }
    refuseUnknownClocks(groups, where);
    return groups;
}

} // namespace

const Value* Group::input(std::string_view cell) const
{
    const auto found =
        std::find_if(inputs.begin(), inputs.end(), [&](const auto& input) { return input.first == cell; });
    return found == inputs.end() ? nullptr : &found->second;
}

const Distribution* Design::distributionAt(std::string_view path) const
{
    const auto found =
        std::find_if(uncertain.begin(), uncertain.end(), [&](const Uncertain& each) { return each.path == path; });
    return found == uncertain.end() ? nullptr : &found->distribution;
}

std::string groupPath(const Design& design, std::size_t index)
{
    const std::string& name = design.groups[index].name;
    const bool isPlain = !name.empty() && name.find(']') == std::string::npos &&
                         name.find_first_not_of("0123456789") != std::string::npos;
    return fmt::format("groups[{}]", isPlain ? name : fmt::format("{}", index));
}

std::string namedPath(const Design& design, const std::string& path)
{
    for (std::size_t i = 0; i < design.groups.size() && path.starts_with("groups["); ++i) {
        const std::string& place = design.groups[i].place;
        if (path.starts_with(place) && path.size() > place.size() && path[place.size()] == '.')
            return groupPath(design, i) + path.substr(place.size());
    }
    return path;
}

std::string remarkOfDistributions(const Design& design)
{
    constexpr std::size_t most = 8;
    const std::size_t count = design.uncertain.size();
    std::vector<std::string> all;
    for (std::size_t i = 0; i < std::min(most, count); ++i)
        all.push_back(fmt::format("{} ({})", namedPath(design, design.uncertain[i].path),
                                  design.uncertain[i].distribution.centreText()));
    if (count > most)
        all.push_back(fmt::format("and {} more", count - most));
    if (count == 0)
        return {};
    return fmt::format("{} mode, mean, middle or heaviest value: {}",
                       count == 1 ? "1 input is a distribution and counts with its"
                                  : fmt::format("{} inputs are distributions and count with their", count),
                       fmt::join(all, ", "));
}

std::span<const OwnField> ownFields()
{
    return kOwnFields;
}

std::vector<const Block*> inputBlocks(const Block& own)
{
    std::vector<const Block*> reached{&own};
    if (own.name == "Clock") {
        for (const Block& fed : blocks()) {
            if (fed.name == "CleClk" || fed.name == "ClkDist")
                reached.push_back(&fed);
        }
    }
    return reached;
}

Reading startReading(const Json& root, const JsonSource& source)
{
    const auto parameters = root.is_object() ? root.find("parameters") : root.end();
    return {source, parameters == root.end() ? Parameters() : Parameters(*parameters, source)};
}

Group readGroup(const Json& value, std::size_t index, Reading& reading)
{
    const std::size_t warningsBefore = reading.warnings.size();
    const Place where = Place(reading, "groups").element(index);
    Fields fields(value, where);
    Group group;
    group.place = where.path();
    const std::string blockName = fields.text("block");
    if (blockName.empty())
        where.fail("a group needs a \"block\" (zelm blocks lists them)");
    try {
        group.block = &block(blockName);
    } catch (const Error& error) {
        fields.place("block").fail(error.what());
    }
    if (group.block->name == "Static")
        fields.place("block").fail("static power is estimated once for the device; put its inputs under \"static\"");
    if (group.block->name == "Parts")
        fields.place("block").fail("the catalogue is asked for the device, and isn't part of a design");
    group.name = fields.text("name", blockName);
    if (isIndex(group.name))
        fields.place("name").fail(fmt::format("\"{}\" reads like a group's index; give it a name", group.name));
    if (const auto count = fields.whole("count", {0, 1e6, "", "instances"}))
        group.count = static_cast<int>(*count);
    group.in = fields.text("in");
    refuseBrokenPath(group.in, fields.place("in"));
    group.clock = fields.text("clock");
    if (!group.clock.empty() && !takesClock(group.block->name))
        fields.place("clock").fail(fmt::format("a group of {} takes no clock of the fabric", group.block->name));
    group.inputs = readInputs(fields.take("inputs"), inputBlocks(*group.block), fields.place("inputs"), reading);
    fields.refuseOthers();
    const auto firstOwn = reading.warnings.begin() + static_cast<std::ptrdiff_t>(warningsBefore);
    group.warnings.assign(firstOwn, reading.warnings.end());
    reading.warnings.erase(firstOwn, reading.warnings.end());
    return group;
}

namespace {

// A Foster network is, in the long run, the sum of its resistances.
void takeStages(Environment& environment, const Place& where, const std::vector<ThermalStage>& stages)
{
    if (stages.empty() || !environment.ambient)
        return;
    if (!environment.cooling.empty())
        where.fail("give thetaJA or a list of cooling, or thermal stages, not both");
    environment.cooling.push_back({"thermal stages", 0.0});
    for (const ThermalStage& stage : stages)
        environment.cooling.back().thetaJA += stage.r;
}

} // namespace

Environment readEnvironment(const Json& value, const std::vector<ThermalStage>& stages, const Reading& reading)
{
    const Place where(reading, "environment");
    Fields fields(value, where);
    Environment environment;
    environment.junction = fields.number("junctionTemperature", kDegrees);
    environment.ambient = fields.number("ambientTemperature", kDegrees);
    environment.junctionLimit = fields.number("junctionLimit", kDegrees);
    if (const auto theta = fields.number("thetaJA", kDegreesPerWatt))
        environment.cooling.push_back({"thetaJA", *theta});
    if (const Json* list = fields.take("cooling")) {
        const Place place = fields.place("cooling");
        if (!environment.cooling.empty())
            place.fail("give thetaJA, or a list of cooling, not both");
        if (!list->is_array() || list->empty())
            place.fail("expected a list of {\"name\": ..., \"thetaJA\": ...}");
        for (std::size_t i = 0; i < list->size(); ++i) {
            Fields entry((*list)[i], place.element(i));
            Cooling cooling{entry.text("name", fmt::format("cooling {}", i + 1)), 0.0};
            const auto theta = entry.number("thetaJA", kDegreesPerWatt);
            if (!theta)
                place.element(i).fail("a cooling needs its \"thetaJA\" in degrees per watt");
            cooling.thetaJA = *theta;
            entry.refuseOthers();
            environment.cooling.push_back(cooling);
        }
    }
    fields.refuseOthers();
    takeStages(environment, where, stages);
    if (environment.junction && environment.ambient)
        where.fail("give junctionTemperature, or ambientTemperature with thetaJA, not both");
    if (environment.ambient && environment.cooling.empty())
        where.fail("ambientTemperature needs thetaJA or a list of cooling to find the junction temperature");
    if (!environment.ambient && !environment.cooling.empty())
        where.fail("thetaJA and cooling need an ambientTemperature");
    return environment;
}

Device readDevice(const Json& value, const Reading& reading)
{
    const Place where(reading, "device");
    Fields fields(value, where);
    Device device;
    device.part = fields.word("part");
    device.family = fields.word("family");
    if (value.contains("process") && isDistribution(value["process"]))
        fields.place("process").fail("studies tell both process sides: choose the one that counts, TYP or MAX");
    device.process = fields.word("process");
    device.speedGrade = fields.word("speedGrade");
    device.voltageGrade = fields.word("voltageGrade");
    device.powerScreen = fields.word("powerScreen");
    device.temperatureGrade = fields.word("temperatureGrade");
    device.overdrive = fields.word("overdrive");
    fields.refuseOthers();
    if (device.part.empty())
        where.fail("a device needs its \"part\" (zelm parts lists them)");
    return device;
}

std::map<std::string, double> readRegulators(const Json& value, const Reading& reading)
{
    std::map<std::string, double> regulators;
    Fields byRail(value, Place(reading, "regulators"));
    for (const auto& [rail, entry] : value.items()) {
        if (!entry.is_object())
            byRail.place(rail).fail(
                fmt::format("expected {{\"maxCurrent\": amperes}}, found {}", Fields::describe(entry)));
        Fields regulator(entry, byRail.place(rail));
        const auto current = regulator.number("maxCurrent", kAmperes);
        if (!current)
            byRail.place(rail).fail("a regulator needs its \"maxCurrent\" in amperes");
        regulators[rail] = *current;
        regulator.refuseOthers();
    }
    return regulators;
}

Budgets readBudgets(const Json& value, const Reading& reading)
{
    Fields fields(value, Place(reading, "budgets"));
    Budgets budgets;
    budgets.totalPower = fields.number("totalPower", kWatts);
    budgets.junction = fields.number("junctionTemperature", kDegrees);
    budgets.rails = fields.numbers("rails", kAmperes);
    budgets.judgedAt = fields.word("judgedAt");
    if (!budgets.judgedAt.empty() && budgets.judgedAt != "TYP" && budgets.judgedAt != "MAX")
        fields.place("judgedAt").fail(fmt::format("there is no process side {}; legal: TYP, MAX", budgets.judgedAt));
    fields.refuseOthers();
    return budgets;
}

// Rails that there are none of are refused later, with all rails of the design.
std::map<std::string, float> readRails(const Json& value, Reading& reading)
{
    const Place where(reading, "rails");
    std::map<std::string, float> rails;
    for (const auto& [rail, volts] : Fields::numbers(value, where, kVolts)) {
        rails[rail] = static_cast<float>(volts);
        const ZelmCellInfo* cell = block("Static").findCell(rail);
        if (cell && takesVolts(*cell))
            judge(block("Static"), *cell, rails[rail], value.at(rail), where.field(rail), reading);
    }
    return rails;
}

std::vector<std::pair<std::string, Value>> readStaticInputs(const Json& value, Reading& reading)
{
    const Place where(reading, "static");
    std::vector<std::pair<std::string, Value>> inputs = readInputs(&value, {&block("Static")}, where, reading);
    for (const auto& [cell, input] : inputs) {
        for (const auto& [taken, place] : kOwnFields) {
            if (cell == taken)
                where.field(cell).fail(fmt::format("give it as {}", place));
        }
    }
    return inputs;
}

Design readDesign(const Json& root, const JsonSource& source)
{
    Reading reading = startReading(root, source);
    const Place where(reading, "");
    Fields fields(root, where);
    Design design;
    design.source = source;
    design.uncertain = reading.parameters.uncertain();
    reading.uncertain = &design.uncertain;
    design.name = fields.text("name", source.file);
    for (const char* known : {"$schema", "description", "include", "parameters"})
        fields.take(known);
    if (const Json* device = fields.take("device"))
        design.device = readDevice(*device, reading);
    const Json* thermal = fields.take("thermal");
    if (thermal)
        design.stages = readStages(*thermal, reading);
    if (const Json* environment = fields.take("environment"))
        design.environment = readEnvironment(*environment, design.stages, reading);
    if (thermal && !design.environment.ambient)
        fields.place("thermal").fail("thermal stages need environment.ambientTemperature, at which they end");
    if (const Json* rails = fields.take("rails"))
        design.rails = readRails(*rails, reading);
    if (const Json* regulators = fields.take("regulators"))
        design.regulators = readRegulators(*regulators, reading);
    const Json* supplies = fields.take("supplies");
    if (supplies)
        design.supplies.all = readSupplies(*supplies, design.regulators, reading);
    if (const Json* sequence = fields.take("sequence")) {
        if (!supplies)
            fields.place("sequence").fail("a sequence needs the \"supplies\" of its rails");
        design.supplies.sequence = readSequence(*sequence, design.supplies.all, reading);
    }
    if (const Json* budgets = fields.take("budgets"))
        design.budgets = readBudgets(*budgets, reading);
    if (const Json* inputs = fields.take("static"))
        design.staticInputs = readStaticInputs(*inputs, reading);
    if (const Json* battery = fields.take("battery"))
        design.batteryWattHours = readBattery(*battery, reading);
    const Json* groups = fields.take("groups");
    const Json* modes = fields.take("modes");
    fields.refuseOthers();
    if (!groups)
        where.fail("a design needs \"groups\": a list of blocks and their inputs");
    design.groups.change() = readGroups(*groups, reading);
    if (modes)
        design.modes = readModes(*modes, root, reading);
    design.warnings = std::move(reading.warnings);
    return design;
}

Design parseDesign(const std::string& file, const std::string& text)
{
    JsonSource source{file, {}};
    const Json root = parseDesignTree(text, source);
    return readDesign(root, source);
}

Design readDesign(const std::string& file)
{
    JsonSource source;
    const Json root = readDesignTree(file, source);
    return readDesign(root, source);
}

} // namespace zelm::host
