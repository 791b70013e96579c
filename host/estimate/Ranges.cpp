#include "host/estimate/Ranges.h"

#include <fmt/format.h>

#include <array>

namespace zelm::host {

namespace {

float pulled(Running& group, const char* cell)
{
    group.instance->pull(group.block->cell(cell));
    const Value value = group.get(cell);
    const float* number = std::get_if<float>(&value);
    return number ? *number : 0.0f;
}

// A rate that no divider of the shared PLL reaches: the PLL then counts at its lowest frequency.
void checkPll(Running& group, const char* direction, const char* idleMode, std::vector<std::string>& warnings)
{
    const std::string side = direction;
    if (group.text("OPERATIONAL_MODE") == idleMode || group.text(side + "_CLOCK_SOURCE") != "LCPLL")
        return;
    if (pulled(group, ("QPLL1_" + side).c_str()) < 0.0f && pulled(group, ("QPLL0_" + side).c_str()) < 0.0f)
        warnings.push_back(
            fmt::format("group \"{}\": no multiple of {}_DATA_RATE {:g} Gb/s lies in the range of the LCPLL",
                        group.name, side, pulled(group, (side + "_DATA_RATE").c_str())));
}

void checkFastest(Running& group, const char* direction, std::vector<std::string>& warnings)
{
    const std::string rateCell = std::string(direction) + "_DATA_RATE";
    const float rate = pulled(group, rateCell.c_str());
    const float most = pulled(group, group.text("MODULATION") == "PAM4" ? "MAX_PAM4_DATARATE" : "MAX_NRZ_DATARATE");
    if (rate > most)
        warnings.push_back(fmt::format("group \"{}\": {} {:g} Gb/s is above the speed grade's {:g} Gb/s", group.name,
                                       rateCell, rate, most));
}

} // namespace

std::vector<std::string> rangeWarnings(Running& group)
{
    std::vector<std::string> warnings;
    const std::string_view block = group.block->name;
    if (block == "Lorv" || block == "Lorvp") {
        checkPll(group, "RX", "TRANSMITTER", warnings);
        checkPll(group, "TX", "RECEIVER", warnings);
    }
    if (block == "Sarn") {
        checkFastest(group, "RX", warnings);
        checkFastest(group, "TX", warnings);
    }
    if (group.block->findCell("INVALID_CONFIG")) {
        group.instance->pull(group.block->cell("INVALID_CONFIG"));
        if (group.text("INVALID_CONFIG") == "YES")
            warnings.push_back(fmt::format("group \"{}\": {} has no such configuration, so it draws nothing",
                                           group.name, group.block->title));
    }
    return warnings;
}

} // namespace zelm::host
