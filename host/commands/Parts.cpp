#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/blocks/Catalogue.h"
#include "host/commands/Command.h"

#include "device/ZelmOrvanePartsData.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace zelm::host {

namespace {

// The grades of a device's orderable parts, by package.
std::map<std::string, std::vector<std::string>> gradesByPackage(const std::string& device)
{
    std::map<std::string, std::vector<std::string>> byPackage;
    for (const std::string& part : orderableParts()) {
        const std::vector<std::string> fields = split(part, '_');
        if (fields[deviceField] == device && fields.size() >= gradedFields)
            byPackage[fields[packageField]].push_back(part.substr(device.size() + fields[packageField].size() + 2));
    }
    return byPackage;
}

// What of a device no block models, so that nobody takes a low figure for a whole one.
std::vector<std::string> notModelled(const std::map<std::string, int>& resources)
{
    const auto has = [&](const char* resource) {
        const auto found = resources.find(resource);
        return found != resources.end() && found->second > 0;
    };
    std::vector<std::string> words;
    if (has("ADC") || has("DAC"))
        words.emplace_back("dynamic power of the converters (bias at the nominal sample rate is in the static power)");
    if (has("VCU"))
        words.emplace_back("the video unit");
    if (has("HBM"))
        words.emplace_back("traffic of the stacked memory");
    return words;
}

// The table of devices, packages, grades and resources.
std::string listParts(bool json)
{
    const std::vector<std::string> devices = deviceNames(); // loads the data, or says what is wrong with them
    const auto& catalogue = ZelmOrvanePartsData::getGlobal();
    Json list = Json::array();
    std::string text;
    for (const std::string& device : devices) {
        const std::string family = catalogue.getDeviceToFamilyMap(device);
        const std::string coreVoltages = catalogue.getDeviceCoreVoltageMap(device);
        const auto byPackage = gradesByPackage(device);
        const std::map<std::string, int> resources = resourcesOf(family, device + "_");
        if (json) {
            list.push_back({{"device", upper(device)},
                            {"family", family},
                            {"coreVoltages", coreVoltages},
                            {"packages", byPackage},
                            {"resources", resources},
                            {"notModelled", notModelled(resources)}});
            continue;
        }
        text += fmt::format("{} ({}; core at {} V)\n", upper(device), family, coreVoltages);
        for (const auto& [package, grades] : byPackage)
            text += fmt::format("  {}_{}_: {}\n", device, package, fmt::join(grades, " "));
        std::vector<std::string> counts;
        for (const auto& [resource, count] : resources)
            counts.push_back(fmt::format("{} {}", count, resource));
        text += fmt::format("  {}\n", fmt::join(counts, ", "));
        if (const auto missing = notModelled(resources); !missing.empty())
            text += fmt::format("  not modelled: {}\n", fmt::join(missing, "; "));
    }
    return json ? jsonText({{"format", kJsonFormat}, {"parts", std::move(list)}})
                : text + "A part is device_package_speed_voltage_temperature_screen: e extended, i industrial, m "
                         "military; S standard, L low power screen.\n";
}

} // namespace

Action declareParts(Options& options)
{
    const bool& json = options.flag("--json", "Print JSON");
    return [&json](Run& run) {
        run.out += listParts(json);
        return kSuccess;
    };
}

} // namespace zelm::host
