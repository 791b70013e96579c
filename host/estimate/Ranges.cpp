#include "host/estimate/Ranges.h"

#include "host/base/Error.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace zelm::host {

namespace {

float pulled(Running& group, std::string_view cell)
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

// Pads of the processing system: their power, the voltage of their bank, and whether they are in use.
struct Pads {
    std::string_view output;
    std::string_view volts;
    std::string_view mode;
};
constexpr std::array<Pads, 3> kPads{
    {{"LPD_GEM0_DYNAMIC_MIO_POWER", "LPD_MIO_GEM0_VOLTAGE", "LPD_GEM0_MODE"},
     {"LPD_GEM1_DYNAMIC_MIO_POWER", "LPD_MIO_GEM1_VOLTAGE", "LPD_GEM1_MODE"},
     {"LPD_LOW_PER_IO_DYNAMIC_MIO_POWER", "LPD_MIO_LOW_PER_IO_VOLTAGE", "LPD_LOW_PER_IO_MODE"}}};

// The formulas know pads at 2.5 V, when exactly that, and at 3.3 V.
float modelledPadVolts(float volts)
{
    constexpr float known = 2.5f;
    constexpr float otherwise = 3.3f;
    return volts == known ? known : otherwise;
}

void checkPads(Running& group, std::vector<std::string>& warnings)
{
    constexpr float tolerance = 0.05f; // as bank supplies are specified
    std::vector<std::string> unknown;
    for (const Pads& pads : kPads) {
        const float volts = pulled(group, pads.volts);
        const float modelled = modelledPadVolts(volts);
        const bool inUse = group.text(pads.mode) != "DISABLED" && pulled(group, pads.output) != 0.0f;
        if (inUse && std::fabs(volts - modelled) > tolerance * modelled)
            unknown.push_back(fmt::format("{} {:g} V", pads.volts, volts));
    }
    if (!unknown.empty())
        warnings.push_back(
            fmt::format("group \"{}\": pads are estimated at 3.3 V, since the formulas know 2.5 and 3.3 V: "
                        "{}",
                        group.name, fmt::join(unknown, ", ")));
    if (const float milliwatts = pulled(group, "LPD_LOW_PER_IO_DYNAMIC_VCCINT_POWER"); milliwatts < 0.0f)
        warnings.push_back(
            fmt::format("group \"{}\": the low-speed pads' core power is negative ({:g} mW): NUM_LPD_IOU "
                        "{} is fewer than the pads of the Ethernet controllers in use",
                        group.name, milliwatts, group.whole("NUM_LPD_IOU")));
}

// A DMA engine's clock follows from the link's name, which the formulas compare with a capital X8.
void checkDmaClock(Running& group, const char* controller, const char* frequency, std::vector<std::string>& warnings)
{
    const std::string side = controller;
    if (group.text(side + "_MODES") == "WIST5_DMA" && group.whole(frequency) == 0)
        warnings.push_back(fmt::format(
            "group \"{}\": no clock for the DMA engine of {} ({} is 0 at {} {}): at GEN5 the "
            "formulas want the width X8",
            group.name, side, frequency, group.text(side + "_LINK_SPEED"), group.text(side + "_LINK_WIDTH")));
}

void checkIdleController(Running& group, std::vector<std::string>& warnings)
{
    if (group.whole("PCI_CHANNELS") == 1 && group.originOf("WIST_MODE_A1") == Origin::design &&
        group.text("WIST_MODE_A1") != "NONE")
        warnings.push_back(fmt::format("group \"{}\": WIST_MODE_A1 {} counts for nothing: PCI_CHANNELS 1 leaves A1 "
                                       "unused",
                                       group.name, group.text("WIST_MODE_A1")));
}

void checkWriteRate(Running& group, const char* write, const char* enable, std::vector<std::string>& warnings)
{
    if (pulled(group, write) > pulled(group, enable))
        warnings.push_back(fmt::format("group \"{}\": {} {:g} is above {} {:g}: a port writes only while it is enabled",
                                       group.name, write, pulled(group, write), enable, pulled(group, enable)));
}

// With both ports of its own width a memory is at most half as wide as its simple-dual-port modes.
void checkWidths(Running& group, std::vector<std::string>& warnings)
{
    const std::string& mode = group.text("MODE");
    const int most = mode == "BLKM18" ? 18 : mode == "BLKM36" ? 36 : 72;
    for (const char* width : {"PORT_A_BIT_WIDTH", "PORT_B_BIT_WIDTH"}) {
        if (group.originOf(width) == Origin::design && group.whole(width) > most)
            warnings.push_back(fmt::format("group \"{}\": {} {} in mode {}, whose ports have at most {} bits",
                                           group.name, width, group.whole(width), mode, most));
    }
}

void checkMemory(Running& group, std::vector<std::string>& warnings)
{
    checkWidths(group, warnings);
    const bool simpleDualPort = group.text("MODE").find("SDP") != std::string::npos;
    if (!simpleDualPort)
        checkWriteRate(group, "PORT_A_WRITE_ENABLE", "PORT_A_ENABLE_RATE", warnings);
    checkWriteRate(group, "PORT_B_WRITE_ENABLE", "PORT_B_ENABLE_RATE", warnings);
    if (simpleDualPort && group.originOf("PORT_A_WRITE_ENABLE") == Origin::design &&
        pulled(group, "PORT_A_WRITE_ENABLE") > 0.0f && pulled(group, "PORT_B_WRITE_ENABLE") == 0.0f)
        warnings.push_back(fmt::format("group \"{}\": port A only reads in mode {}: PORT_A_WRITE_ENABLE {:g} is for "
                                       "PORT_B_WRITE_ENABLE, which is 0",
                                       group.name, group.text("MODE"), pulled(group, "PORT_A_WRITE_ENABLE")));
}

void checkFanout(Running& group, std::vector<std::string>& warnings)
{
    constexpr int small = 1000; // a few registers may well have a site each
    const int fanout = group.whole("FANOUT");
    if (fanout > small && fanout == group.whole("FFS_USING_CLK") && pulled(group, "FANOUT_PER_SITE") == 1.0f)
        warnings.push_back(fmt::format(
            "group \"{}\": FANOUT {} counts sites, not the {} registers of FFS_USING_CLK: some eight share a "
            "slice, which makes {} sites",
            group.name, fanout, fanout, (fanout + 7) / 8));
}

} // namespace

void refuseImpossible(const Design& design)
{
    constexpr std::int64_t iosOfNibble = 6;
    for (std::size_t i = 0; i < design.groups.size(); ++i) {
        const Group& group = design.groups[i];
        if (group.block->name != "Kelp")
            continue;
        const auto ios = [&](std::string_view cell) {
            const Value* value = group.input(cell);
            return value ? std::int64_t{std::get<int>(*value)} : 0;
        };
        const std::int64_t rx = ios("NUM_RX_IOS");
        const std::int64_t tx = ios("NUM_TX_IOS");
        const std::int64_t both = ios("NUM_RXTX_IOS");
        if (rx + tx + both > iosOfNibble)
            throw Error(
                fmt::format("{}: group \"{}\": NUM_RX_IOS {} + NUM_TX_IOS {} + NUM_RXTX_IOS {} are {} I/Os, and a "
                            "nibble has at most {}; \"count\" is the number of nibbles",
                            design.source.at(fmt::format("groups[{}].inputs", i)), group.name, rx, tx, both,
                            rx + tx + both, iosOfNibble));
    }
}

std::optional<double> padVolts(const Running& group, std::string_view output)
{
    if (group.block->name != "Yond")
        return std::nullopt;
    const auto* pads = std::find_if(kPads.begin(), kPads.end(), [&](const Pads& p) { return p.output == output; });
    if (pads == kPads.end())
        return std::nullopt;
    const Value value = group.get(pads->volts);
    const float* volts = std::get_if<float>(&value);
    return static_cast<double>(modelledPadVolts(volts ? *volts : 0.0f));
}

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
    if (block == "Yond")
        checkPads(group, warnings);
    if (block == "Wist")
        checkIdleController(group, warnings);
    if (block == "Wist5") {
        checkDmaClock(group, "A0", "DMA0_FREQUENCY", warnings);
        checkDmaClock(group, "A1", "DMA1_FREQUENCY", warnings);
    }
    if (block == "Bram")
        checkMemory(group, warnings);
    if (block == "Plam") {
        checkWriteRate(group, "WRITE_ENABLE_A", "ENABLE_RATE_A", warnings);
        checkWriteRate(group, "WRITE_ENABLE_B", "ENABLE_RATE_B", warnings);
    }
    if (block == "Clock")
        checkFanout(group, warnings);
    return warnings;
}

} // namespace zelm::host
