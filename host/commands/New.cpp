#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/blocks/Rails.h"
#include "host/commands/Command.h"
#include "host/commands/NewDesign.h"
#include "host/design/ResolvedDevice.h"
#include "host/design/Template.h"
#include "host/estimate/Estimate.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace zelm::host {

namespace {

// What the catalogue and the static power model know of a part: its rails are those that leak.
TemplateDevice deviceOf(const std::string& part)
{
    Design empty;
    empty.source.file = "--part";
    empty.device.emplace();
    empty.device->part = part;
    const auto resolved = resolve(empty);
    TemplateDevice device{resolved->name, part, resolved->resources, {}};
    const Estimate leaking = estimate(empty);
    for (const RailResult& rail : leaking.side().rails) {
        if (hasRail(resolved->name, rail.name) && rail.amperes() != 0.0)
            device.rails.emplace_back(rail.name, rail.volts);
    }
    return device;
}

// A supply for each voltage, for what its rails draw on the worse process side, running or powering up, and half as
// much again. What stands inside another rail is fed with that.
std::vector<TemplateSupply> suppliesOf(const Estimate& estimate)
{
    constexpr double margin = 1.5;
    std::map<double, TemplateSupply> byVolts;
    for (const Side& side : estimate.sides) {
        std::map<double, std::pair<double, double>> amperes; // running and powering up
        for (const RailResult& rail : side.rails) {
            if (!rail.inside.empty() || (rail.amperes() == 0.0 && rail.powerUpAmperes == 0.0))
                continue;
            amperes[rail.volts].first += rail.amperes();
            amperes[rail.volts].second += rail.powerUpAmperes;
            TemplateSupply& supply = byVolts[rail.volts];
            supply.volts = rail.volts;
            if (std::find(supply.rails.begin(), supply.rails.end(), rail.name) == supply.rails.end())
                supply.rails.push_back(rail.name);
        }
        for (const auto& [volts, both] : amperes)
            byVolts[volts].maxAmperes =
                std::max(byVolts[volts].maxAmperes, std::ceil(margin * std::max(both.first, both.second)));
    }
    std::vector<TemplateSupply> supplies;
    for (auto& [volts, supply] : byVolts)
        supplies.push_back(std::move(supply));
    return supplies;
}

} // namespace

std::string newDesign(const std::string& kind, const std::string& part)
{
    const TemplateDevice device = deviceOf(part);
    const Estimate unfed = estimate(parseDesign("template", templateDesign(kind, device)));
    return templateDesign(kind, device, suppliesOf(unfed));
}

Action declareNew(Options& options)
{
    const std::optional<std::string>& part =
        options.value("--part", "PART", "An orderable part or a device (zelm parts); else one of middle size");
    const std::optional<std::string>& kind =
        options.value("--template", "KIND", "What to begin with: blank, controller, network, radio or vision");
    const std::optional<std::string>& output = options.text("-o,--output", "Write it to this file");
    return [&](Run& run) {
        const std::string design = newDesign(kind.value_or("blank"), part.value_or(kNewPart));
        if (output) {
            refuseOverwriting({*output}, {});
            if (whyUnreadable(*output).empty()) // a person's work, most likely
                throw Error(fmt::format("{}: is there already; new designs take no file's place", *output));
            writeFile(*output, design);
        } else {
            run.out += design;
        }
        return kSuccess;
    };
}

} // namespace zelm::host
