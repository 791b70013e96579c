#include "host/Catalogue.h"

#include "host/Error.h"
#include "host/Json.h"
#include "host/Text.h"

#include "device/ZelmOrvanePartsModel.h"
#include "device/ZelmOrvaneStaticData.h"
#include "network/ZelmOrvaneNocData.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <set>

namespace zelm::host {

namespace {

std::vector<std::string> sortedKeys(const Block& block, std::vector<std::string> chain, bool whole = false)
{
    std::vector<std::string> keys = block.keys(std::move(chain), whole);
    std::sort(keys.begin(), keys.end());
    return keys;
}

const Block& parts()
{
    const Block& block = zelm::host::block("Parts");
    block.load();
    return block;
}

const Block& statics()
{
    const Block& block = zelm::host::block("Static");
    block.load();
    return block;
}

// The orderable parts of the catalogue: device, package, speed, voltage grade, temperature letter, screen letter.
enum PartField { deviceField, packageField, speedField, voltageField, temperatureField, screenField, gradedFields };

std::vector<std::string> orderableParts()
{
    std::set<std::string> all;
    for (const std::string& series : sortedKeys(parts(), {"DEVICE_DATA"})) {
        for (std::string& part : sortedKeys(parts(), {"DEVICE_DATA", series}))
            all.insert(std::move(part));
    }
    return {all.begin(), all.end()};
}

std::string temperatureWord(const std::string& letter)
{
    return letter == "e" ? "EXTENDED" : letter == "i" ? "INDUSTRIAL" : letter == "m" ? "MILITARY" : letter;
}

std::string screenWord(const std::string& letter)
{
    return letter == "S" ? "STANDARD" : letter == "L" ? "LOW" : letter;
}

void requireOneOf(const std::string& place, const std::string& what, const std::string& word,
                  const std::vector<std::string>& legal)
{
    if (std::find(legal.begin(), legal.end(), word) == legal.end())
        throw Error(fmt::format("{}: there is no {} {}; legal: {}", place, what, word, fmt::join(legal, ", ")));
}

// What the parts model says of a part; an empty resource leaves the default.
ZelmOrvanePartsParams ask(const std::string& family, const std::string& part, const std::string& resource)
{
    using Params = ZelmOrvanePartsParams;
    Params params;
    params[Params::DEVICE_FAMILY] = family;
    params[Params::PART_SELECTION] = part;
    if (!resource.empty())
        params[Params::RESOURCE_TYPE] = resource;
    ZelmOrvanePartsModel::getGlobal().calculate(params);
    return params;
}

std::map<std::string, int> resourcesOf(const std::string& family, const std::string& part)
{
    using Params = ZelmOrvanePartsParams;
    const Params first = ask(family, part, "");
    const std::string devicePackage = first[Params::DEVICE_PACKAGE];
    std::map<std::string, int> resources;
    for (const std::string& resource : parts().keys({"RESOURCE_DATA", devicePackage}, true)) {
        const Params counted = ask(family, part, resource);
        resources[resource] = counted[Params::RESOURCE_COUNT];
    }
    return resources;
}

// One grade: the design's own word, else the part's, else the static model's default. The two must not contradict.
std::string grade(const std::string& place, const std::string& given, const std::string& ofPart, const char* cell)
{
    if (!given.empty() && !ofPart.empty() && given != ofPart)
        throw Error(fmt::format("{}: the design says {}, its part says {}", place, given, ofPart));
    return !given.empty() ? given : !ofPart.empty() ? ofPart : constantDefault(statics().cell(cell));
}

} // namespace

ResolvedDevice resolve(const Design& design)
{
    const Device& device = design.device.value();
    const auto place = [&](const char* field) { return design.source.at(std::string("device.") + field); };
    const auto& catalogue = ZelmOrvanePartsData::getGlobal();
    const std::vector<std::string> devices = sortedKeys(parts(), {"DEVICE_TO_FAMILY_MAP"});
    const std::vector<std::string> orderable = orderableParts();
    const bool isPart = std::find(orderable.begin(), orderable.end(), device.part) != orderable.end();
    const std::vector<std::string> fields = split(device.part, '_');
    const std::string name = lower(fields[deviceField]);
    if (std::find(devices.begin(), devices.end(), name) == devices.end() || (!isPart && fields.size() > 1)) {
        std::vector<std::string> known = orderable;
        for (const std::string& d : devices)
            known.push_back(upper(d));
        throw Error(fmt::format("{}: there is no part or device {}{}; devices: {} (zelm parts lists all)",
                                place("part"), device.part, suggestion(device.part, known),
                                upper(fmt::format("{}", fmt::join(devices, ", ")))));
    }

    ResolvedDevice resolved;
    resolved.name = upper(name);
    resolved.names.push_back(resolved.name);
    for (const std::string& die : sortedKeys(statics(), {"INT_TO_EXT_DEV_MAP"})) {
        if (ZelmOrvaneStaticData::getGlobal().getIntToExtDevMap(die) == resolved.name)
            resolved.names.push_back(die);
    }
    zelm::host::block("Noc").load();
    resolved.names.push_back(ZelmOrvaneNocData::getGlobal().getDeviceIntNames(resolved.name));
    resolved.part = isPart ? device.part : "";
    resolved.family = device.family.empty() ? catalogue.getDeviceToFamilyMap(name) : device.family;
    // A device without a package is asked for by its name and the separator.
    const std::string asked = isPart ? device.part : name + "_";
    if (isPart && ask(resolved.family, device.part, "")[ZelmOrvanePartsParams::IS_PART_SUPPORTED] == "No")
        throw Error(fmt::format("{}: {} is not in the {}; it is in the {}", place("family"), device.part,
                                resolved.family, catalogue.getDeviceToFamilyMap(name)));
    resolved.resources = resourcesOf(resolved.family, asked);

    const auto ofPart = [&](PartField field) { return isPart && fields.size() >= gradedFields ? fields[field] : ""; };
    resolved.process = device.process.empty() ? constantDefault(statics().cell("PROCESS")) : device.process;
    const std::string speed = grade(place("speedGrade"), device.speedGrade, ofPart(speedField), "SPEED_GRADE");
    const std::string voltage =
        grade(place("voltageGrade"), device.voltageGrade, ofPart(voltageField), "VOLTAGE_GRADE");
    const std::string screen =
        grade(place("powerScreen"), device.powerScreen, screenWord(ofPart(screenField)), "POWER_SCREEN");
    const std::string temperature = grade(place("temperatureGrade"), device.temperatureGrade,
                                          temperatureWord(ofPart(temperatureField)), "TEMP_GRADE");
    const std::string overdrive = grade(place("overdrive"), device.overdrive, "", "OVER_DRIVE");

    const Block& table = statics();
    requireOneOf(place("part"), "device with leakage data,", resolved.name, sortedKeys(table, {"TOTAL_POWER_FACTORS"}));
    requireOneOf(place("process"), "process", resolved.process, sortedKeys(table, {"VT_COEFFICIENT", resolved.name}));
    // A combination of grades is a path through the tree of SKUs.
    std::vector<std::string> path{"SKU_LIST"};
    struct Grade {
        const char* field;
        const char* what;
        std::string word;
    };
    const std::array<Grade, 5> grades{{{"speedGrade", "speed grade", "SPEED_" + speed},
                                       {"voltageGrade", "voltage grade", voltage},
                                       {"powerScreen", "power screen", screen},
                                       {"temperatureGrade", "temperature grade", temperature},
                                       {"overdrive", "overdrive", overdrive}}};
    for (const auto& [field, what, word] : grades) {
        requireOneOf(
            place(field),
            path.size() == 1 ? what : fmt::format("{} (with {})", what, fmt::join(path.begin() + 1, path.end(), ", ")),
            word, sortedKeys(table, path));
        path.push_back(word);
    }
    std::from_chars(speed.data(), speed.data() + speed.size(), resolved.speedGrade);
    resolved.staticInputs = {{"DEVICE_NAME", resolved.name}, {"PROCESS", resolved.process}, {"SPEED_GRADE", speed},
                             {"VOLTAGE_GRADE", voltage},     {"POWER_SCREEN", screen},      {"TEMP_GRADE", temperature},
                             {"OVER_DRIVE", overdrive}};
    return resolved;
}

std::string listParts(bool json)
{
    const auto& catalogue = ZelmOrvanePartsData::getGlobal();
    const std::vector<std::string> orderable = orderableParts();
    Json list = Json::array();
    std::string text;
    for (const std::string& device : sortedKeys(parts(), {"DEVICE_TO_FAMILY_MAP"})) {
        const std::string family = catalogue.getDeviceToFamilyMap(device);
        std::map<std::string, std::vector<std::string>> byPackage;
        for (const std::string& part : orderable) {
            const std::vector<std::string> fields = split(part, '_');
            if (fields[deviceField] != device || fields.size() < gradedFields)
                continue;
            byPackage[fields[packageField]].push_back(part.substr(device.size() + fields[packageField].size() + 2));
        }
        const std::map<std::string, int> resources = resourcesOf(family, device + "_");
        if (json) {
            list.push_back({{"device", upper(device)},
                            {"family", family},
                            {"coreVoltages", catalogue.getDeviceCoreVoltageMap(device)},
                            {"packages", byPackage},
                            {"resources", resources}});
            continue;
        }
        text +=
            fmt::format("{} ({}; core at {} V)\n", upper(device), family, catalogue.getDeviceCoreVoltageMap(device));
        for (const auto& [package, grades] : byPackage)
            text += fmt::format("  {}_{}_: {}\n", device, package, fmt::join(grades, " "));
        std::vector<std::string> counts;
        for (const auto& [resource, count] : resources)
            counts.push_back(fmt::format("{} {}", count, resource));
        text += fmt::format("  {}\n", fmt::join(counts, ", "));
    }
    return json ? list.dump(2) + "\n"
                : text + "A part is device_package_speed_voltage_temperature_screen: e extended, i industrial, m "
                         "military; S standard, L low power screen.\n";
}

} // namespace zelm::host
