#include "memories/ZelmOrvaneBramModel.h"

#include "framework/ZelmModelBlockImpl.h"

#include <array>

template class ZelmModelBlock<ZelmOrvaneBramModel, ZelmOrvaneBramParams, ZelmOrvaneBramData>;

namespace {

using Params = ZelmOrvaneBramParams;

// The keys of all tables. The first two are the true dual-port primitives; the others follow in the order of selection.
enum Key : std::size_t {
    blkm18,
    blkm36,
    blkm18Sdp3636,
    blkm18Sdp3618,
    blkm18Sdp1836,
    blkm36Sdp7272,
    blkm36Sdp7236,
    blkm36Sdp3672,
    blkm36SdpEcc,
    blkm36SdpEccEncodeOnly,
    blkm36SdpEccDecodeOnly,
    noKey
};
constexpr std::array<std::string_view, noKey> kKeys{"BLKM18",
                                                    "BLKM36",
                                                    "BLKM18SDP_36_36",
                                                    "BLKM18SDP_36_18",
                                                    "BLKM18SDP_18_36",
                                                    "BLKM36SDP_72_72",
                                                    "BLKM36SDP_72_36",
                                                    "BLKM36SDP_36_72",
                                                    "BLKM36SDP_ECC",
                                                    "BLKM36SDP_ECC_ENCODE_ONLY",
                                                    "BLKM36SDP_ECC_DECODE_ONLY"};
constexpr std::size_t kTrueDualPortKeys = blkm36 + 1;

} // namespace

// Names a write mode and its rows in the tables of dynamic current.
struct ZelmOrvaneBramModel::WriteMode {
    std::string_view name;
    std::string_view readRow;
    std::string_view writeRow;
};

struct ZelmOrvaneBramModel::Access {
    bool inSimpleDualPort; // whether the port does this in the simple-dual-port modes
    std::string_view direction;
    std::string_view WriteMode::*row;
};

struct ZelmOrvaneBramModel::Port {
    using Input = float (ZelmOrvaneBramModel::*)(Params&, const Data&) const;
    Input clock;
    Input enableRate;
    Input writeEnable;
    Input toggleRate;
    std::string_view (ZelmOrvaneBramModel::*writeMode)(Params&, const Data&) const;
    Access read;
    Access write;
    Params::FloatEnum readRate;
    Params::FloatEnum readToggle;
    Params::FloatEnum standby;
    Params::FloatEnum unusedPower;
    Params::FloatEnum writeRate;
    Params::FloatEnum writeToggle;
};

struct ZelmOrvaneBramModel::PortOnRail {
    const Port& port;
    std::string_view rail;
    float (Data::*findDynamicCurrent)(std::string_view, std::string_view) const;
    Params::FloatEnum activity;
    Params::FloatEnum readCurrent;
    Params::FloatEnum writeCurrent;
};

// The power cells of a configuration follow each other in enum order.
struct ZelmOrvaneBramModel::Configuration {
    std::string_view mode;
    Params::FloatEnum firstCell;

    enum Metric { aOnVccint, aOnVccram, bOnVccint, bOnVccram };
    float& cell(Params& params, Metric metric) const
    {
        return params[zelm::cellBehind(firstCell, metric)];
    }
};

using Model = ZelmOrvaneBramModel;
constinit const Model::WriteMode Model::kWriteModes[] = {
    {"READ_FIRST", "RF_R", "RF_W"}, {"WRITE_FIRST", "WF_R", "WF_W"}, {"NO_CHANGE", "NC_R", "NC_W"}};

constinit const Model::Port Model::kPortA{
    .clock = &Model::getPortAClock,
    .enableRate = &Model::getPortAEnableRate,
    .writeEnable = &Model::getPortAWriteEnable,
    .toggleRate = &Model::getToggleRateA,
    .writeMode = &Model::viewPortAWriteMode,
    .read = {.inSimpleDualPort = true, .direction = "R", .row = &WriteMode::readRow},
    .write = {.inSimpleDualPort = false, .direction = "W", .row = &WriteMode::writeRow},
    .readRate = Params::READ_RATE_A,
    .readToggle = Params::TR_CALC_READ_A,
    .standby = Params::STDBY_CALC_A,
    .unusedPower = Params::UNUSED_BRAM_CALC_A,
    .writeRate = Params::WRITE_RATE_A,
    .writeToggle = Params::TR_CALC_WRITE_A,
};
constinit const Model::Port Model::kPortB{
    .clock = &Model::getPortBClock,
    .enableRate = &Model::getPortBEnableRate,
    .writeEnable = &Model::getPortBWriteEnable,
    .toggleRate = &Model::getToggleRateB,
    .writeMode = &Model::viewPortBWriteMode,
    .read = {.inSimpleDualPort = false, .direction = "R", .row = &WriteMode::readRow},
    .write = {.inSimpleDualPort = true, .direction = "W", .row = &WriteMode::writeRow},
    .readRate = Params::READ_RATE_B,
    .readToggle = Params::TR_CALC_READ_B,
    .standby = Params::STDBY_CALC_B,
    .unusedPower = Params::UNUSED_BRAM_CALC_B,
    .writeRate = Params::WRITE_RATE_B,
    .writeToggle = Params::TR_CALC_WRITE_B,
};

constinit const Model::PortOnRail Model::kAOnVccint{kPortA,
                                                    "VCCINT",
                                                    &Data::findDynamicCurrentVccint,
                                                    Params::ACTIVITY_A_VCCINT,
                                                    Params::READ_CURRENT_A_VCCINT,
                                                    Params::WRITE_CURRENT_A_VCCINT};
constinit const Model::PortOnRail Model::kAOnVccram{kPortA,
                                                    "VCCRAM",
                                                    &Data::findDynamicCurrentVccram,
                                                    Params::ACTIVITY_A_VCCRAM,
                                                    Params::READ_CURRENT_A_VCCRAM,
                                                    Params::WRITE_CURRENT_A_VCCRAM};
constinit const Model::PortOnRail Model::kBOnVccint{kPortB,
                                                    "VCCINT",
                                                    &Data::findDynamicCurrentVccint,
                                                    Params::ACTIVITY_B_VCCINT,
                                                    Params::READ_CURRENT_B_VCCINT,
                                                    Params::WRITE_CURRENT_B_VCCINT};
constinit const Model::PortOnRail Model::kBOnVccram{kPortB,
                                                    "VCCRAM",
                                                    &Data::findDynamicCurrentVccram,
                                                    Params::ACTIVITY_B_VCCRAM,
                                                    Params::READ_CURRENT_B_VCCRAM,
                                                    Params::WRITE_CURRENT_B_VCCRAM};

constinit const Model::Configuration Model::kBlkm18{"BLKM18", Params::BLKM18_A_VCCINT_PWR};
constinit const Model::Configuration Model::kBlkm36{"BLKM36", Params::BLKM36_A_VCCINT_PWR};
constinit const Model::Configuration Model::kBlkm18Sdp{"BLKM18SDP", Params::BLKM18SDP_A_VCCINT_PWR};
constinit const Model::Configuration Model::kBlkm36Sdp{"BLKM36SDP", Params::BLKM36SDP_A_VCCINT_PWR};
constinit const Model::Configuration Model::kBlkm36SdpEcc{"BLKM36SDP_ECC", Params::BLKM36SDP_ECC_A_VCCINT_PWR};
constinit const Model::Configuration Model::kBlkm36SdpEccEncodeOnly{"BLKM36SDP_ECC_ENCODE_ONLY",
                                                                    Params::BLKM36SDP_ECC_ENCODE_ONLY_A_VCCINT_PWR};
constinit const Model::Configuration Model::kBlkm36SdpEccDecodeOnly{"BLKM36SDP_ECC_DECODE_ONLY",
                                                                    Params::BLKM36SDP_ECC_DECODE_ONLY_A_VCCINT_PWR};

#define ZELM_MODEL ZelmOrvaneBramModel
#define ZELM_CELL_ROWS "memories/ZelmOrvaneBramCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneBramModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVccintPower(params, data);
    calculateVccramPower(params, data);
}

// ---- Cascade ----

int ZelmOrvaneBramModel::calculateMod(Params& params, const Data& data) const
{
    return once(params[Params::MOD], [&] {
        const int brams = getNumBrams(params, data);
        const int groupSize = getCascadeGroupSize(params, data);
        return zelm::remainderOrZero(brams, groupSize);
    });
}

int ZelmOrvaneBramModel::calculateBramMod(Params& params, const Data& data) const
{
    return once(params[Params::BRAM_MOD], [&] {
        const int brams = getNumBrams(params, data);
        const int leftOver = calculateMod(params, data);
        return zelm::wrapSubtract(brams, leftOver);
    });
}

int ZelmOrvaneBramModel::calculateBramInCasc(Params& params, const Data& data) const
{
    return once(params[Params::BRAM_IN_CASC], [&] {
        const int inWholeGroups = calculateBramMod(params, data);
        const int groupSize = getCascadeGroupSize(params, data);
        return zelm::quotientOrZero(inWholeGroups, groupSize);
    });
}

int ZelmOrvaneBramModel::calculateUnusedBramStdby(Params& params, const Data& data) const
{
    return once(params[Params::UNUSED_BRAM_STDBY], [&] {
        const int brams = getNumBrams(params, data);
        const int active = calculateBramInCasc(params, data);
        return zelm::wrapSubtract(brams, active);
    });
}

float ZelmOrvaneBramModel::activity(const PortOnRail& portOnRail, Params& params, const Data& data) const
{
    return once(params[portOnRail.activity], [&] {
        const float clock = (this->*portOnRail.port.clock)(params, data);
        const float simVoltage = data.findSimVoltage(portOnRail.rail);
        const int active = calculateBramInCasc(params, data);
        const double clockVolts = clock * simVoltage;
        return clockVolts * 0.001 * active;
    });
}

// ---- Primitive key ----

bool ZelmOrvaneBramModel::isTrueDualPort(Params& params, const Data& data) const
{
    const std::string_view mode = viewMode(params, data);
    return mode == "BLKM18" || mode == "BLKM36";
}

std::size_t ZelmOrvaneBramModel::selectedKey(Params& params, const Data& data) const
{
    const std::string_view mode = viewMode(params, data);
    const int widthA = getPortABitWidth(params, data);
    const int widthB = getPortBBitWidth(params, data);
    if (mode == "BLKM18SDP") {
        if (widthA == 36 && widthB == 36)
            return blkm18Sdp3636;
        if (widthA == 36 && widthB < 19)
            return blkm18Sdp3618;
        return widthB == 36 && widthA < 19 ? blkm18Sdp1836 : noKey;
    }
    if (mode == "BLKM36SDP") {
        if (widthA == 72 && widthB == 72)
            return blkm36Sdp7272;
        if (widthA == 72 && widthB < 37)
            return blkm36Sdp7236;
        return widthB == 72 && widthA < 37 ? blkm36Sdp3672 : noKey;
    }
    for (const Key key : {blkm18, blkm36, blkm36SdpEcc, blkm36SdpEccEncodeOnly, blkm36SdpEccDecodeOnly}) {
        if (mode == kKeys[key])
            return key;
    }
    return noKey;
}

// The current of the selected key, 0 without one. All keys are looked up before one is chosen. What a port doesn't do
// in the simple-dual-port modes has currents for the true dual-port keys only.
template <class Current>
float ZelmOrvaneBramModel::ofSelectedKey(bool simpleDualPort, Params& params, const Data& data, Current current) const
{
    const std::size_t count = simpleDualPort ? kKeys.size() : kTrueDualPortKeys;
    std::array<float, kKeys.size()> currents{};
    for (std::size_t key = 0; key < count; ++key)
        currents[key] = current(kKeys[key]);
    const std::size_t selected = selectedKey(params, data);
    return selected < count ? currents[selected] : 0.0f;
}

float ZelmOrvaneBramModel::calculateModStdbyCurrent(Params& params, const Data& data) const
{
    return once(params[Params::MOD_STDBY_CURRENT], [&] {
        return ofSelectedKey(true, params, data, [&](std::string_view key) { return data.findStandbyCurrent(key); });
    });
}

// ---- Access rates ----

float ZelmOrvaneBramModel::readRate(const Port& port, Params& params, const Data& data) const
{
    return once(params[port.readRate], [&] {
        const float enableRate = (this->*port.enableRate)(params, data);
        const float writeEnable = (this->*port.writeEnable)(params, data);
        const float readOnly = port.read.inSimpleDualPort ? enableRate : 0.0f;
        return isTrueDualPort(params, data) ? enableRate - ZelmHelperUtils::MIN(enableRate, writeEnable) : readOnly;
    });
}

float ZelmOrvaneBramModel::writeRate(const Port& port, Params& params, const Data& data) const
{
    return once(params[port.writeRate], [&] {
        const float enableRate = (this->*port.enableRate)(params, data);
        const float writeEnable = (this->*port.writeEnable)(params, data);
        const float written = ZelmHelperUtils::MIN(enableRate, writeEnable);
        // Port B writes whatever MODE says, an unknown one too: the workbook has no test there.
        return port.write.inSimpleDualPort || isTrueDualPort(params, data) ? written : 0.0f;
    });
}

// ---- Currents ----

float ZelmOrvaneBramModel::current(float& cell, const Access& access, const PortOnRail& portOnRail, Params& params,
                                   const Data& data) const
{
    return once(cell, [&] {
        const std::string_view writeMode = (this->*portOnRail.port.writeMode)(params, data);
        std::string_view row; // stays empty for an unknown write mode, which draws nothing
        for (const WriteMode& known : kWriteModes)
            row = writeMode == known.name ? known.*access.row : row;
        return ofSelectedKey(access.inSimpleDualPort, params, data, [&](std::string_view key) {
            return row.empty() ? 0.0f : (data.*portOnRail.findDynamicCurrent)(key, row);
        });
    });
}

float ZelmOrvaneBramModel::readCurrent(const PortOnRail& portOnRail, Params& params, const Data& data) const
{
    return current(params[portOnRail.readCurrent], portOnRail.port.read, portOnRail, params, data);
}

float ZelmOrvaneBramModel::writeCurrent(const PortOnRail& portOnRail, Params& params, const Data& data) const
{
    return current(params[portOnRail.writeCurrent], portOnRail.port.write, portOnRail, params, data);
}

// No clamp: the tables hold for 25 percent, and calmer data lower the current.
float ZelmOrvaneBramModel::toggleTerm(float& cell, const Access& access, const Port& port, Params& params,
                                      const Data& data) const
{
    return once(cell, [&] {
        const float toggleRate = (this->*port.toggleRate)(params, data);
        return ofSelectedKey(access.inSimpleDualPort, params, data, [&](std::string_view key) {
            return (toggleRate * 100.0f - 25.0f) * data.findPerTrCurrent(key, access.direction);
        });
    });
}

float ZelmOrvaneBramModel::readToggle(const Port& port, Params& params, const Data& data) const
{
    return toggleTerm(params[port.readToggle], port.read, port, params, data);
}

float ZelmOrvaneBramModel::writeToggle(const Port& port, Params& params, const Data& data) const
{
    return toggleTerm(params[port.writeToggle], port.write, port, params, data);
}

float ZelmOrvaneBramModel::standby(const Port& port, Params& params, const Data& data) const
{
    return once(params[port.standby], [&] {
        const float standbyCurrent = calculateModStdbyCurrent(params, data);
        const float enableRate = (this->*port.enableRate)(params, data);
        return standbyCurrent * (1.0f - enableRate);
    });
}

// Memories that stand by don't care for the enable rate.
float ZelmOrvaneBramModel::unusedPower(const Port& port, Params& params, const Data& data) const
{
    return once(params[port.unusedPower], [&] {
        const float clock = (this->*port.clock)(params, data);
        const float simVoltage = data.findSimVoltage("VCCINT");
        const int unused = calculateUnusedBramStdby(params, data);
        const double standbyCurrent = calculateModStdbyCurrent(params, data);
        const double clockVolts = clock * simVoltage;
        return clockVolts * 0.001 * unused * standbyCurrent;
    });
}

// ---- Power per port: one formula for all configurations ----

float ZelmOrvaneBramModel::vccintPower(float& cell, const PortOnRail& portOnRail, Params& params,
                                       const Data& data) const
{
    return once(cell, [&] {
        const Port& port = portOnRail.port;
        const float active = activity(portOnRail, params, data);
        const float reads = readRate(port, params, data);
        const float read = readCurrent(portOnRail, params, data);
        const float readToggling = readToggle(port, params, data);
        const float writes = writeRate(port, params, data);
        const float write = writeCurrent(portOnRail, params, data);
        const float writeToggling = writeToggle(port, params, data);
        const float standingBy = standby(port, params, data);
        const float unused = unusedPower(port, params, data);
        return active * (reads * (read + readToggling) + writes * (write + writeToggling) + standingBy) + unused;
    });
}

// The memory array has no toggle, standby and idle-member terms of its own.
float ZelmOrvaneBramModel::vccramPower(float& cell, const PortOnRail& portOnRail, Params& params,
                                       const Data& data) const
{
    return once(cell, [&] {
        const float active = activity(portOnRail, params, data);
        const float reads = readRate(portOnRail.port, params, data);
        const float read = readCurrent(portOnRail, params, data);
        const float writes = writeRate(portOnRail.port, params, data);
        const float write = writeCurrent(portOnRail, params, data);
        return active * (reads * read + writes * write);
    });
}

float ZelmOrvaneBramModel::powerAVccint(const Configuration& configuration, Params& params, const Data& data) const
{
    return vccintPower(configuration.cell(params, Configuration::aOnVccint), kAOnVccint, params, data);
}

float ZelmOrvaneBramModel::powerAVccram(const Configuration& configuration, Params& params, const Data& data) const
{
    return vccramPower(configuration.cell(params, Configuration::aOnVccram), kAOnVccram, params, data);
}

float ZelmOrvaneBramModel::powerBVccint(const Configuration& configuration, Params& params, const Data& data) const
{
    return vccintPower(configuration.cell(params, Configuration::bOnVccint), kBOnVccint, params, data);
}

float ZelmOrvaneBramModel::powerBVccram(const Configuration& configuration, Params& params, const Data& data) const
{
    return vccramPower(configuration.cell(params, Configuration::bOnVccram), kBOnVccram, params, data);
}

// ---- Rails ----

// Both ports of the configuration that MODE names, 0 for an unknown one. All configurations are pulled before.
float ZelmOrvaneBramModel::sumOfMode(ConfigurationPower powerA, ConfigurationPower powerB, Params& params,
                                     const Data& data) const
{
    const std::string_view mode = viewMode(params, data);
    float selected = 0.0f;
    for (const Configuration* configuration : {&kBlkm18, &kBlkm36, &kBlkm18Sdp, &kBlkm36Sdp, &kBlkm36SdpEcc,
                                               &kBlkm36SdpEccEncodeOnly, &kBlkm36SdpEccDecodeOnly}) {
        const float a = (this->*powerA)(*configuration, params, data);
        const float b = (this->*powerB)(*configuration, params, data);
        selected = mode == configuration->mode ? a + b : selected;
    }
    return selected;
}

float ZelmOrvaneBramModel::calculateVccintPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_POWER], [&] {
        const float sum =
            sumOfMode(&ZelmOrvaneBramModel::powerAVccint, &ZelmOrvaneBramModel::powerBVccint, params, data);
        const float vccint = getVccint(params, data);
        return sum * zelm::voltageFactor(vccint, data.findSimVoltage("VCCINT"));
    });
}

float ZelmOrvaneBramModel::calculateVccramPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCRAM_POWER], [&] {
        const float sum =
            sumOfMode(&ZelmOrvaneBramModel::powerAVccram, &ZelmOrvaneBramModel::powerBVccram, params, data);
        const float vccram = getVccram(params, data);
        return sum * zelm::voltageFactor(vccram, data.findSimVoltage("VCCRAM"));
    });
}
