#include "host/estimate/CrossChecks.h"

#include "host/blocks/Uses.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace zelm::host {

namespace {

using Warnings = std::vector<std::string>;

double realOf(const Running& group, std::string_view cell)
{
    const Value value = group.get(cell);
    const float* number = std::get_if<float>(&value);
    return number ? static_cast<double>(*number) : 0.0;
}

std::string gigabytes(double megabytes)
{
    return fmt::format("{:.4g} GB/s", megabytes / 1000.0);
}

// ---- Traffic ----

double bandwidth(const Running& controller)
{
    return realOf(controller, "READ_BAND_WIDTH") + realOf(controller, "WRITE_BAND_WIDTH");
}

void checkBus(const Running& controller, Warnings& warnings)
{
    const int width = controller.whole("DATA_WIDTH");
    const double rate = realOf(controller, "DATA_RATE");
    const double peak = width / 8.0 * rate; // MB/s
    if (bandwidth(controller) > peak)
        warnings.push_back(fmt::format(
            "group \"{}\": READ_BAND_WIDTH + WRITE_BAND_WIDTH are {} of the bus's peak of {} ({} bits at {:g} Mb/s)",
            controller.name, gigabytes(bandwidth(controller)), gigabytes(peak), width, rate));
}

void checkTraffic(const RunningGroups& groups, Warnings& warnings)
{
    constexpr double rounding = 1.05; // people round what they declare
    double carried = 0.0;
    double declared = 0.0;
    for (const Running* group : groups.of("Noc")) {
        if (group->text("DATA_PATH").ends_with("_TO_DDRC"))
            carried += group->count * (realOf(*group, "BANDWITH_READ") + realOf(*group, "BANDWITH_WRITE"));
    }
    for (const Running* group : groups.of("Ddrmc")) {
        if (group->count > 0) {
            declared += group->count * bandwidth(*group);
            checkBus(*group, warnings);
        }
    }
    if (carried > rounding * declared)
        warnings.push_back(
            fmt::format("the network on chip carries {} to memory, and the memory controllers declare {} "
                        "(READ_BAND_WIDTH + WRITE_BAND_WIDTH of all)",
                        gigabytes(carried), gigabytes(declared)));
}

// ---- Clock loads ----

// A load of a clock, the resource that it is, and how many clocks one may be on: a memory has two ports.
struct Load {
    std::string_view cell;
    std::string_view resource;
    int clocks;
};
constexpr std::array<Load, 6> kLoads{{{"FFS_USING_CLK", "FF", 1},
                                      {"SRLS_USING_CLK", "LUT", 1},
                                      {"LUTRAMS_USING_CLK", "LUT", 1},
                                      {"BRAMS_USING_CLK", "BRAM", 2},
                                      {"PLAMS_USING_CLK", "PLAM", 1},
                                      {"DSPS_USING_CLK", "DSP", 1}}};

constexpr int kRegistersPerSlice = 16;

int resource(const ResolvedDevice& device, std::string_view name)
{
    const auto found = device.resources.find(std::string(name));
    return found == device.resources.end() ? 0 : found->second;
}

// What the net reaches, against the device's sites: slices of 16 registers, memories and DSP slices.
void checkNet(const Running& clock, const ResolvedDevice& device, Warnings& warnings)
{
    for (const Load& load : kLoads) {
        const int there = resource(device, load.resource);
        if (clock.isSet(load.cell) && clock.whole(load.cell) > there)
            warnings.push_back(fmt::format("group \"{}\": {} {} is more than the {} {} of {}", clock.name, load.cell,
                                           clock.whole(load.cell), there, load.resource, device.name));
    }
    const double sites = realOf(clock, "SITES");
    const int there = resource(device, "FF") / kRegistersPerSlice + resource(device, "BRAM") +
                      resource(device, "PLAM") + resource(device, "DSP");
    if (sites > there)
        warnings.push_back(fmt::format("group \"{}\": FANOUT makes {:g} sites, and {} has {}: slices, memories and DSP "
                                       "slices",
                                       clock.name, sites, device.name, there));
    const int regions = resource(device, "FSR");
    if (clock.isSet("NUM_FSR") && clock.whole("NUM_FSR") > regions)
        warnings.push_back(fmt::format("group \"{}\": NUM_FSR {} is more than the {} fabric regions of {}", clock.name,
                                       clock.whole("NUM_FSR"), regions, device.name));
}

// The loads that a clock names, each in a site of its own, are all that its net can reach.
void checkSites(const Running& clock, Warnings& warnings)
{
    if (!clock.isSet("FANOUT") || !clock.isSet("FFS_USING_CLK"))
        return;
    std::int64_t loads = 0;
    for (const Load& load : kLoads)
        loads += clock.whole(load.cell);
    const double sites = realOf(clock, "SITES");
    if (sites > static_cast<double>(loads))
        warnings.push_back(
            fmt::format("group \"{}\": FANOUT makes {:g} sites for {} loads: registers, shift registers, "
                        "memories and DSP slices",
                        clock.name, sites, loads));
}

// How many loads of a kind the design's other groups name.
std::int64_t named(const RunningGroups& groups, std::string_view cell)
{
    std::int64_t sum = 0;
    for (const ClockLoad& load : clockLoads()) {
        if (load.load != cell)
            continue;
        for (const Running* group : groups.of(load.block)) {
            if (load.kind.empty() || group->text(load.kind).starts_with(load.word))
                sum += std::int64_t{group->count} * group->whole(load.cell) * load.each;
        }
    }
    return sum;
}

// Only what people wrote: loads that were carried are the groups' own. Where no group names a kind, nothing is known.
void checkNamedLoads(const RunningGroups& groups, Warnings& warnings)
{
    for (const Load& load : kLoads) {
        std::int64_t clocked = 0;
        for (const Running* group : groups.of("Clock")) {
            if (group->originOf(load.cell) == Origin::design)
                clocked += std::int64_t{group->count} * group->whole(load.cell);
        }
        const std::int64_t all = named(groups, load.cell);
        if (all > 0 && clocked > load.clocks * all)
            warnings.push_back(fmt::format("the clocks' {} add up to {}, and the design's groups name {}{}", load.cell,
                                           clocked, all, load.clocks > 1 ? ", each on two clocks at most" : ""));
    }
}

// A slice on a clock holds at least one register, shift register or LUT memory.
void checkSlices(const RunningGroups& groups, const ResolvedDevice* device, Warnings& warnings)
{
    std::int64_t clocked = 0;
    for (const Running* group : groups.of("CleClk")) {
        const int slices = group->whole("NUM_CLOCKED_SLICES");
        clocked += std::int64_t{group->count} * slices;
        if (const int there = device ? resource(*device, "FF") / kRegistersPerSlice : slices; slices > there)
            warnings.push_back(fmt::format("group \"{}\": NUM_CLOCKED_SLICES {} is more than the {} slices of {}",
                                           group->name, slices, there, device->name));
    }
    const std::int64_t registers = named(groups, "FFS_USING_CLK");
    const std::int64_t all = registers + named(groups, "SRLS_USING_CLK") + named(groups, "LUTRAMS_USING_CLK");
    if (registers > 0 && clocked > all)
        warnings.push_back(
            fmt::format("the clocks reach {} slices (NUM_CLOCKED_SLICES), and the design's groups name {} "
                        "registers, shift registers and LUT memories",
                        clocked, all));
}

// ---- Counted twice ----

void checkPlls(const RunningGroups& groups, Warnings& warnings)
{
    int apart = 0;
    std::string names;
    for (const Running* group : groups.of("Pspll")) {
        if (group->count == 0)
            continue;
        apart += group->count;
        names += fmt::format("{}\"{}\"", names.empty() ? "" : ", ", group->name);
    }
    for (const Running* group : groups.of("Yond")) {
        if (group->count == 0 || apart == 0)
            continue;
        const int on = (group->whole("FPD_PLL_ON_OFF") != 0 ? 1 : 0) + (group->whole("LPD_PLL_ON_OFF") != 0 ? 1 : 0);
        if (on > 0)
            warnings.push_back(
                fmt::format("group \"{}\": {} of its PLLs are on (FPD_PLL_ON_OFF, LPD_PLL_ON_OFF) beside "
                            "{} in {}: the processing system's PLLs are counted twice",
                            group->name, on, apart, names));
    }
}

} // namespace

std::vector<std::string> warningsAcross(const RunningGroups& groups, const ResolvedDevice* device)
{
    Warnings warnings;
    checkTraffic(groups, warnings);
    for (const Running* group : groups.of("Clock")) {
        if (group->count == 0)
            continue;
        checkSites(*group, warnings);
        if (device)
            checkNet(*group, *device, warnings);
    }
    checkNamedLoads(groups, warnings);
    checkSlices(groups, device, warnings);
    checkPlls(groups, warnings);
    return warnings;
}

} // namespace zelm::host
