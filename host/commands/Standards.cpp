#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/blocks/IoStandards.h"
#include "host/commands/Command.h"

#include "framework/ZelmUnset.h"

namespace zelm::host {

namespace {

// The table of I/O standards, for people.
std::string listStandards(bool json)
{
    if (json) {
        Json list = Json::array();
        for (const IoStandard& standard : ioStandards())
            list.push_back({{"bank", standard.bank},
                            {"direction", standard.direction},
                            {"standard", standard.name},
                            {"pins", isPair(standard.name) ? 2 : 1},
                            {"volts", isUnset(standard.volts) ? Json() : Json(shortest(standard.volts))}});
        return jsonText({{"format", kJsonFormat}, {"standards", std::move(list)}});
    }
    TextTable table({"Bank", "Direction", "Standard", "Pins", "VCCO"});
    for (const IoStandard& standard : ioStandards())
        table.row({standard.bank, standard.direction, standard.name, isPair(standard.name) ? "2" : "1",
                   isUnset(standard.volts) ? "" : exactText(standard.volts) + " V"});
    return table.text();
}

} // namespace

Action declareStandards(Options& options)
{
    const bool& json = options.flag("--json", "Print JSON");
    return [&json](Run& run) {
        run.out += listStandards(json);
        return kSuccess;
    };
}

} // namespace zelm::host
