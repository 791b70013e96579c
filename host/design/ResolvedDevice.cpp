#include "host/design/ResolvedDevice.h"

#include "host/base/Error.h"
#include "host/base/Text.h"
#include "host/blocks/Catalogue.h"
#include "host/blocks/Rails.h"

#include "device/ZelmOrvanePartsData.h"
#include "device/ZelmOrvaneStaticData.h"
#include "network/ZelmOrvaneNocData.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <mutex>

namespace zelm::host {

namespace {

const Block& statics()
{
    const Block& block = zelm::host::block("Static");
    block.load();
    return block;
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
        throw Error(
            fmt::format("{}: there is no {} {}; legal: {}", place, what, abbreviated(word), fmt::join(legal, ", ")));
}

std::string placeOf(const Design& design, const char* field)
{
    return design.source.at(std::string("device.") + field);
}

// A grade of the device: the field of the design and the static model's input that hold it.
struct Grade {
    const char* field;
    const char* what;
    const char* cell;
    std::string word{};
};
using Grades = std::array<Grade, 5>;

// Each is the design's own word, else the part's, else the static model's default. The two must not contradict.
Grades gradesOf(const Design& design, const std::vector<std::string>& part)
{
    const auto chosen = [&](Grade grade, const std::string& given, const std::string& ofPart) {
        if (!given.empty() && !ofPart.empty() && given != ofPart)
            throw Error(fmt::format("{}: the design says {}, its part says {}", placeOf(design, grade.field),
                                    abbreviated(given), ofPart));
        grade.word = !given.empty() ? given : !ofPart.empty() ? ofPart : constantDefault(statics().cell(grade.cell));
        return grade;
    };
    const Device& device = design.device.value();
    return {chosen({"speedGrade", "speed grade", "SPEED_GRADE"}, device.speedGrade, part[speedField]),
            chosen({"voltageGrade", "voltage grade", "VOLTAGE_GRADE"}, device.voltageGrade, part[voltageField]),
            chosen({"powerScreen", "power screen", "POWER_SCREEN"}, device.powerScreen, screenWord(part[screenField])),
            chosen({"temperatureGrade", "temperature grade", "TEMP_GRADE"}, device.temperatureGrade,
                   temperatureWord(part[temperatureField])),
            chosen({"overdrive", "overdrive", "OVER_DRIVE"}, device.overdrive, "")};
}

// A combination of grades is a path through the tree of SKUs.
void refuseUnknownSku(const Design& design, const Grades& grades)
{
    std::vector<std::string> path{"SKU_LIST"};
    for (const Grade& grade : grades) {
        const bool first = path.size() == 1;
        const std::string key = (first ? "SPEED_" : "") + grade.word;
        requireOneOf(placeOf(design, grade.field),
                     first ? grade.what
                           : fmt::format("{} (with {})", grade.what, fmt::join(path.begin() + 1, path.end(), ", ")),
                     key, sortedKeys(statics(), path));
        path.push_back(key);
    }
}

[[noreturn]] void failUnknown(const Design& design, const std::vector<std::string>& devices,
                              std::vector<std::string> known)
{
    for (const std::string& device : devices)
        known.push_back(upper(device));
    const std::string& part = design.device->part;
    throw Error(fmt::format("{}: there is no part or device {}{}; devices: {} (zelm parts lists all)",
                            placeOf(design, "part"), abbreviated(part), suggestion(part, known),
                            upper(fmt::format("{}", fmt::join(devices, ", ")))));
}

// What data files call a device: device, die, internal name.
std::vector<std::string> namesOf(const std::string& device)
{
    std::vector<std::string> names{device};
    for (const std::string& die : sortedKeys(statics(), {"INT_TO_EXT_DEV_MAP"})) {
        if (ZelmOrvaneStaticData::getGlobal().getIntToExtDevMap(die) == device)
            names.push_back(die);
    }
    block("Noc").load();
    names.push_back(ZelmOrvaneNocData::getGlobal().getDeviceIntNames(device));
    return names;
}

// The static power model finds a rail's nominal voltage by the device's grades when it is pulled.
std::map<std::string, float> nominalVolts(const ResolvedDevice& device)
{
    const auto instance = statics().create();
    for (const auto& [cell, word] : device.staticInputs)
        instance->set(statics().cell(cell), word);
    std::map<std::string, float> byRail;
    for (const std::string& rail : railNames()) {
        const ZelmCellInfo& cell = statics().cell(rail);
        instance->pull(cell);
        if (const float volts = instance->real(cell).value_or(0.0f); volts > 0.0f)
            byRail[rail] = volts;
    }
    return byRail;
}

ResolvedDevice resolveAnew(const Design& design)
{
    const Device& device = design.device.value();
    const std::vector<std::string> devices = deviceNames(); // loads the data, or says what is wrong with them
    const auto& catalogue = ZelmOrvanePartsData::getGlobal();
    const std::vector<std::string> orderable = orderableParts();
    const bool isPart = std::find(orderable.begin(), orderable.end(), device.part) != orderable.end();
    std::vector<std::string> fields = split(device.part, '_');
    const std::string name = lower(fields[deviceField]);
    if (std::find(devices.begin(), devices.end(), name) == devices.end() || (!isPart && fields.size() > 1))
        failUnknown(design, devices, orderable);

    ResolvedDevice resolved;
    resolved.name = upper(name);
    resolved.names = namesOf(resolved.name);
    resolved.part = isPart ? device.part : "";
    resolved.family = device.family.empty() ? catalogue.getDeviceToFamilyMap(name) : device.family;
    const std::string family = catalogue.getDeviceToFamilyMap(name);
    if (isPart ? !isInFamily(resolved.family, device.part) : resolved.family != family)
        throw Error(fmt::format("{}: {} is not in the {}; it is in the {}", placeOf(design, "family"), device.part,
                                abbreviated(resolved.family), family));
    resolved.resources = resourcesOf(resolved.family, isPart ? device.part : name + "_");

    if (!isPart || fields.size() < gradedFields)
        fields.assign(gradedFields, "");
    resolved.process = device.process.empty() ? constantDefault(statics().cell("PROCESS")) : device.process;
    const Grades grades = gradesOf(design, fields);
    requireOneOf(placeOf(design, "part"), "device with leakage data,", resolved.name,
                 sortedKeys(statics(), {"TOTAL_POWER_FACTORS"}));
    requireOneOf(placeOf(design, "process"), "process", resolved.process,
                 sortedKeys(statics(), {"VT_COEFFICIENT", resolved.name}));
    refuseUnknownSku(design, grades);
    const std::string& speed = grades.front().word;
    std::from_chars(speed.data(), speed.data() + speed.size(), resolved.speedGrade);
    resolved.staticInputs = {{"DEVICE_NAME", resolved.name}, {"PROCESS", resolved.process}};
    for (const Grade& grade : grades)
        resolved.staticInputs.emplace_back(grade.cell, grade.word);
    resolved.volts = nominalVolts(resolved);
    return resolved;
}

// What designs' devices have come to: a process meets few of them, over and over.
class ResolvedDevices {
public:
    std::shared_ptr<const ResolvedDevice> find(const Design& design)
    {
        const std::lock_guard lock(m_mutex);
        const Device& device = design.device.value();
        if (!m_known.empty() && m_loads != loads())
            m_known.clear();
        const auto known =
            std::find_if(m_known.begin(), m_known.end(), [&](const auto& entry) { return entry.first == device; });
        if (known != m_known.end())
            return known->second;
        auto resolved = std::make_shared<const ResolvedDevice>(resolveAnew(design));
        constexpr std::size_t most = 64;
        if (m_known.size() == most)
            m_known.clear();
        m_known.emplace_back(device, resolved);
        m_loads = loads();
        return resolved;
    }

private:
    // How often the data that it takes have been loaded.
    static std::array<unsigned, 3> loads()
    {
        return {block("Parts").loads(), block("Static").loads(), block("Noc").loads()};
    }

    std::mutex m_mutex;
    std::vector<std::pair<Device, std::shared_ptr<const ResolvedDevice>>> m_known;
    std::array<unsigned, 3> m_loads{};
};

} // namespace

std::shared_ptr<const ResolvedDevice> resolve(const Design& design)
{
    static ResolvedDevices devices;
    return devices.find(design);
}

} // namespace zelm::host
