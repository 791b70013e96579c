#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/blocks/Rails.h"
#include "host/commands/Command.h"
#include "host/design/ResolvedDevice.h"
#include "host/design/Template.h"
#include "host/estimate/Estimate.h"

#include <fmt/format.h>

namespace zelm::host {

namespace {

// What the catalogue and the static power model know of a part: its rails are those that leak.
TemplateDevice deviceOf(const std::string& part)
{
    Design empty;
    empty.source.file = "--part";
    empty.device.emplace();
    empty.device->part = part;
    const ResolvedDevice resolved = resolve(empty);
    TemplateDevice device{resolved.name, part, resolved.resources, {}};
    const Estimate leaking = estimate(empty);
    for (const RailResult& rail : leaking.side().rails) {
        if (hasRail(resolved.name, rail.name) && rail.amperes() != 0.0)
            device.rails.emplace_back(rail.name, rail.volts);
    }
    return device;
}

} // namespace

Action declareNew(Options& options)
{
    const std::optional<std::string>& part =
        options.value("--part", "PART", "An orderable part or a device (zelm parts); else one of middle size");
    const std::optional<std::string>& kind =
        options.value("--template", "KIND", "What to begin with: blank, controller, network, radio or vision");
    const std::optional<std::string>& output = options.text("-o,--output", "Write it to this file");
    return [&](Run& run) {
        const std::string design =
            templateDesign(kind.value_or("blank"), deviceOf(part.value_or("zq4410_ktba3310_1_MP_i_S")));
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
