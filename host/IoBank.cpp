#include "host/IoBank.h"

#include "host/Json.h"
#include "host/RollUp.h"
#include "host/Text.h"

#include "framework/ZelmUnset.h"
#include "io/ZelmOrvaneNaltData.h"
#include "io/ZelmOrvaneSelvData.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace zelm::host {

namespace {

using Origin = InputValue::Origin;

// The input that holds the bank's voltage, by block.
std::string_view bankCell(const Block& block)
{
    return block.name == "Selv" ? "VCCO15" : block.name == "Nalt" ? "VCCO" : "";
}

template <class Data>
void list(std::vector<IoStandard>& standards, const std::string& bank)
{
    const Data& data = Data::getGlobal();
    const auto add = [&](const char* direction, const char* table, auto volts) {
        std::vector<std::string> names = data.getCfgKeys({table}, false);
        std::sort(names.begin(), names.end());
        for (const std::string& name : names)
            standards.push_back({bank, direction, name, volts(name)});
    };
    // A standard's own voltage stands in its row, or else in the list for hosts.
    const auto listed = [&](const char* direction, const std::string& name) {
        const std::string volts = data.getIoList(direction, name);
        return isUnset(volts) ? unsetFloat : ZelmHelperUtils::s2f(volts);
    };
    add("input", "IBUF", [&](const std::string& name) {
        return ZelmHelperUtils::IFERROR(data.findIbuf(name, "VCCO"), listed("INPUT", name));
    });
    add("output", "OBUF", [&](const std::string& name) {
        return ZelmHelperUtils::IFERROR(data.findObuf(name, "VCCO"), listed("OUTPUT", name));
    });
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

} // namespace

const std::vector<IoStandard>& ioStandards()
{
    static const std::vector<IoStandard> all = [] {
        std::vector<IoStandard> standards;
        block("Selv").load();
        block("Nalt").load();
        list<ZelmOrvaneSelvData>(standards, "Selv");
        list<ZelmOrvaneNaltData>(standards, "Nalt");
        return standards;
    }();
    return all;
}

std::string listStandards(bool json)
{
    if (json) {
        Json list = Json::array();
        for (const IoStandard& standard : ioStandards())
            list.push_back({{"bank", standard.bank},
                            {"direction", standard.direction},
                            {"standard", standard.name},
                            {"volts", isUnset(standard.volts) ? Json() : Json(shortest(standard.volts))}});
        return list.dump(2) + "\n";
    }
    TextTable table({"Bank", "Direction", "Standard", "VCCO"});
    for (const IoStandard& standard : ioStandards())
        table.row({standard.bank, standard.direction, standard.name,
                   isUnset(standard.volts) ? "" : exactText(standard.volts) + " V"});
    return table.text();
}

std::string Running::bankRail() const
{
    const std::string_view cell = bankCell(*block);
    if (cell.empty())
        return {};
    const Value value = get(cell);
    const float* volts = std::get_if<float>(&value);
    return zelm::host::bankRail(volts ? *volts : 0.0f);
}

void setBankVoltage(Running& group, const RailVolts& rails, std::vector<std::string>& warnings)
{
    const std::string_view cellName = bankCell(*group.block);
    if (cellName.empty())
        return;
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
            return s.bank == group.block->name && s.direction == direction_ && s.name == name;
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
        const float volts = std::get<float>(group.get(cellName));
        if (std::fabs(volts - standard->volts) > tolerance * standard->volts)
            warnings.push_back(fmt::format("group \"{}\": {} at {:g} V doesn't fit {}, which is made for {:g} V",
                                           group.name, cellName, volts, name, standard->volts));
    };
    if (drives(direction))
        check("output", "OUTPUT_IO_STANDARD");
    if (receives(direction))
        check("input", "INPUT_IO_STANDARD");
}

} // namespace zelm::host
