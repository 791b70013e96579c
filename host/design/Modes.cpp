#include "host/design/Modes.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/design/Place.h"
#include "host/design/Sections.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <set>

namespace zelm::host {

namespace {

constexpr std::array<const char*, 4> kSettable{"groups", "rails", "static", "parameters"};

// A number above 0.
double readAboveZero(Fields& fields, const std::string& name, const Range& range, const char* zero)
{
    const auto number = fields.number(name, range);
    if (!number || *number == 0.0)
        fields.place(name).fail(zero);
    return *number;
}

// Modes differ in what the groups do and at which volts: all else is the same board at the same place.
void refuseFixed(const std::string& path, const Place& place)
{
    const std::string field = path.substr(0, path.find_first_of(".["));
    if (std::find(kSettable.begin(), kSettable.end(), field) == kSettable.end() || field == path)
        place.fail(fmt::format("a mode sets places in groups, rails, static and parameters, as in "
                               "groups[NAME].inputs.CELL{}",
                               suggestion(field, {kSettable.begin(), kSettable.end()})));
    if (path.ends_with("].name") || path.ends_with("].block"))
        place.fail("a mode can't make a group another");
}

Json& settingAt(Json& root, const std::string& path, const Place& place)
{
    try {
        return placeAt(root, path);
    } catch (const Error& error) {
        place.fail(error.what());
    }
}

// By index and by name, the last setting of a place would win.
void refuseSetTwice(const Json& settings, Json marked, const Place& where)
{
    std::size_t mark = 0;
    for (const auto& [path, value] : settings.items())
        settingAt(marked, path, where.field(path)) = mark++;
    mark = 0;
    for (const auto& [path, value] : settings.items()) {
        if (settingAt(marked, path, where.field(path)) != mark++)
            where.field(path).fail("this place is set twice");
    }
}

// What a message says behind file and line, which are those of the place without the setting.
std::string withoutLine(const std::string& message, const JsonSource& source)
{
    if (!message.starts_with(source.file + ":"))
        return message;
    const std::size_t end = message.find_first_not_of("0123456789:", source.file.size());
    return end != std::string::npos && message[end] == ' ' ? message.substr(end + 1) : message;
}

// The design with settings, of which the first that can't be is blamed.
std::shared_ptr<const Design> designWith(const Json& settings, const Place& where, const Json& root,
                                         const JsonSource& source)
{
    Json changed = root;
    for (const auto& [path, value] : settings.items())
        settingAt(changed, path, where.field(path)) = value;
    try {
        return std::make_shared<const Design>(readDesign(changed, source));
    } catch (const Error&) {
        changed = root;
        for (const auto& [path, value] : settings.items()) {
            settingAt(changed, path, where.field(path)) = value;
            try {
                readDesign(changed, source);
            } catch (const Error& error) {
                where.field(path).fail(withoutLine(error.what(), source));
            }
        }
        throw; // settings that only go wrong together can't be: all of them have just been tried
    }
}

// A study draws each value of the design once, and all modes follow.
void refuseOwnDistributions(const Mode& mode, const Place& where)
{
    const std::vector<Uncertain>* known = where.reading().uncertain;
    for (const Uncertain& own : mode.design->uncertain) {
        const bool isKnown = known && std::any_of(known->begin(), known->end(), [&](const Uncertain& base) {
                                 return base.path == own.path && base.distribution == own.distribution;
                             });
        if (!isKnown)
            where.fail(fmt::format("a mode can't set a distribution ({}): let a parameter be one, and the mode set an "
                                   "expression of it",
                                   own.path));
    }
}

Mode readMode(const Json& value, const Place& where, const Json& root, const JsonSource& source)
{
    Fields fields(value, where);
    Mode mode;
    mode.name = fields.text("name");
    if (mode.name.empty())
        where.fail("a mode needs its \"name\"");
    if (!value.contains("for"))
        where.fail("a mode needs how long it lasts: \"for\", in seconds");
    mode.seconds = readAboveZero(fields, "for", kSeconds, "a mode of no length never happens");
    const Json* settings = fields.take("set");
    fields.refuseOthers();
    const Place place = fields.place("set");
    const Json none = Json::object();
    if (settings && !settings->is_object())
        place.fail(fmt::format("expected an object of values by path, found {}", Fields::describe(*settings)));
    for (const auto& [path, setting] : (settings ? *settings : none).items())
        refuseFixed(path, place.field(path));
    refuseSetTwice(settings ? *settings : none, root, place);
    mode.design = designWith(settings ? *settings : none, place, root, source);
    refuseOwnDistributions(mode, place);
    return mode;
}

} // namespace

std::vector<Mode> readModes(const Json& value, const Json& root, const Reading& reading)
{
    const Place where(reading, "modes");
    if (!value.is_array() || value.empty())
        where.fail(fmt::format("expected a list of modes, found {}", Fields::describe(value)));
    if (value.size() > kMostModes)
        where.fail(fmt::format("a design has at most {} modes, found {}", kMostModes, value.size()));
    if (const auto groups = root.find("groups");
        groups != root.end() && groups->size() * value.size() > kMostModeGroups)
        where.fail(fmt::format("{} modes of {} groups are too many: at most {} in all", value.size(), groups->size(),
                               kMostModeGroups));
    Json plain = root;
    plain.erase("modes");
    std::vector<Mode> modes;
    std::set<std::string> names;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const Place place = where.element(i);
        modes.push_back(readMode(value[i], place, plain, reading.source));
        if (!names.insert(modes.back().name).second)
            place.field("name").fail(
                fmt::format("two modes are named \"{}\"; give each its own name", abbreviated(modes.back().name)));
    }
    return modes;
}

std::vector<ThermalStage> readStages(const Json& value, const Reading& reading)
{
    const Place where(reading, "thermal");
    Fields fields(value, where);
    const Json* list = fields.take("stages");
    fields.refuseOthers();
    const Place stages = fields.place("stages");
    if (!list || !list->is_array() || list->empty())
        (list ? stages : where).fail("expected \"stages\": a list of {\"r\": degrees per watt, \"tau\": seconds}");
    if (list->size() > kMostStages)
        stages.fail(fmt::format("a network has at most {} stages, found {}", kMostStages, list->size()));
    std::vector<ThermalStage> result;
    for (std::size_t i = 0; i < list->size(); ++i) {
        Fields stage((*list)[i], stages.element(i));
        const double r =
            readAboveZero(stage, "r", kDegreesPerWatt, "a stage needs its \"r\", degrees per watt above 0");
        const double tau =
            readAboveZero(stage, "tau", kSeconds, "a stage needs its \"tau\", a time constant above 0 seconds");
        stage.refuseOthers();
        result.push_back({r, tau});
    }
    return result;
}

double readBattery(const Json& value, const Reading& reading)
{
    const Place where(reading, "battery");
    Fields fields(value, where);
    const double energy = readAboveZero(fields, "energy", kWattHours, "a battery needs its \"energy\", above 0 Wh");
    fields.refuseOthers();
    return energy;
}

} // namespace zelm::host
