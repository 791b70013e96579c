#include "fabric/ZelmOrvaneClkDistModel.h"

#include "framework/ZelmModelBlockImpl.h"

template class ZelmModelBlock<ZelmOrvaneClkDistModel, ZelmOrvaneClkDistParams, ZelmOrvaneClkDistData>;

using Model = ZelmOrvaneClkDistModel;

struct Model::Rail {
    std::string_view key; // in SIM_VOLTAGE
    float (Model::*volts)(Params&, const Data&) const;
};

struct Model::Segment {
    std::string_view key; // in CURRENT
    int (Model::*count)(Params&, const Data&) const;
    const Rail& rail;
    Params::FloatEnum cell;
};

// A leaf node; the more loads share it, the less each is charged.
struct Model::Leaf {
    int (Model::*count)(Params&, const Data&) const;
    double divisor; // microamperes per milliampere x sharing loads
    Params::FloatEnum cell;
};

// clang-format off
const Model::Rail
    Model::kVccint {"VCCINT", &Model::getVccint},
    Model::kVccram {"VCCRAM", &Model::getVccram};

const Model::Segment
    Model::kHd     {"HD",      &Model::getHdCount,     kVccram, Params::HD_CUR     },
    Model::kHdHsr  {"HD_HSR",  &Model::getHdHsrCount,  kVccram, Params::HD_HSR_CUR },
    Model::kHdLoc  {"HD_LOC",  &Model::getHdLocCount,  kVccint, Params::HD_LOC_CUR },
    Model::kHr     {"HR",      &Model::getHrCount,     kVccram, Params::HR_CUR     },
    Model::kVd     {"VD",      &Model::getVdCount,     kVccram, Params::VD_CUR     },
    Model::kVdL1   {"VD_L1",   &Model::getVdL1Count,   kVccram, Params::VD_L1_CUR  },
    Model::kVdL2   {"VD_L2",   &Model::getVdL2Count,   kVccram, Params::VD_L2_CUR  },
    Model::kVdSsit {"VD_SSIT", &Model::getVdSsitCount, kVccram, Params::VD_SSIT_CUR},
    Model::kVr     {"VR",      &Model::getVrCount,     kVccram, Params::VR_CUR     },
    Model::kVrSsit {"VR_SSIT", &Model::getVrSsitCount, kVccram, Params::VR_SSIT_CUR};

const Model::Leaf
    Model::kLeaf1 {&Model::getLeaf1Count, 1000.0, Params::LEAF_1_CUR},
    Model::kLeaf2 {&Model::getLeaf2Count, 2000.0, Params::LEAF_2_CUR},
    Model::kLeaf4 {&Model::getLeaf4Count, 4000.0, Params::LEAF_4_CUR},
    Model::kLeaf8 {&Model::getLeaf8Count, 8000.0, Params::LEAF_8_CUR};
// clang-format on

#define ZELM_MODEL ZelmOrvaneClkDistModel
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneClkDistCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneClkDistModel::pullOutputs(Params& params, const Data& data) const
{
    calculateClkNetworkVccintPwr(params, data);
    calculateClkNetworkVccramPwr(params, data);
    calculateClkBufVccramPwr(params, data);
    calculateBufferCur(params, data);
    calculateHrCur(params, data);
    calculateVrCur(params, data);
    calculateVrSsitCur(params, data);
    calculateHdCur(params, data);
    calculateHdHsrCur(params, data);
    calculateVdCur(params, data);
    calculateVdL1Cur(params, data);
    calculateVdL2Cur(params, data);
    calculateVdSsitCur(params, data);
    calculateHdLocCur(params, data);
    calculateLeaf1Cur(params, data);
    calculateLeaf2Cur(params, data);
    calculateLeaf4Cur(params, data);
    calculateLeaf8Cur(params, data);
}

float ZelmOrvaneClkDistModel::gatedMix(std::string_view node, Params& params, const Data& data) const
{
    const float gating = getGatingProb(params, data);
    const float gated = data.findCurrent(node, "GATED");
    const float ungated = data.findCurrent(node, "UNGATED");
    return (1.0f - gating) * ungated + gating * gated;
}

// A current scales with the voltage, not with its square; the power takes the second factor.
double ZelmOrvaneClkDistModel::voltageRatio(const Rail& rail, Params& params, const Data& data) const
{
    const float volts = (this->*rail.volts)(params, data);
    const float simulated = data.findSimVoltage(rail.key);
    return zelm::ratioOrZero(volts, simulated);
}

// In microamperes.
double ZelmOrvaneClkDistModel::networkCurrent(std::string_view node, int count, const Rail& rail, Params& params,
                                              const Data& data) const
{
    const float clockFreq = getClockFreq(params, data);
    const double mix = gatedMix(node, params, data);
    const double ratio = voltageRatio(rail, params, data);
    const double rate = static_cast<float>(count) * clockFreq;
    return mix * (rate * ratio);
}

float ZelmOrvaneClkDistModel::segmentCurrent(const Segment& segment, Params& params, const Data& data) const
{
    return once(params[segment.cell], [&] {
        const int count = (this->*segment.count)(params, data);
        // Narrowed in microamperes already, where leaves aren't: results must match the characterisation workbook.
        const float microamperes = static_cast<float>(networkCurrent(segment.key, count, segment.rail, params, data));
        return static_cast<double>(microamperes) / 1000.0;
    });
}

float ZelmOrvaneClkDistModel::leafCurrent(const Leaf& leaf, Params& params, const Data& data) const
{
    return once(params[leaf.cell], [&] {
        const int count = (this->*leaf.count)(params, data);
        return networkCurrent("LEAF", count, kVccint, params, data) / leaf.divisor;
    });
}

float ZelmOrvaneClkDistModel::calculateBufferCur(Params& params, const Data& data) const
{
    return once(params[Params::BUFFER_CUR], [&] {
        const double mix = gatedMix(viewBufType(params, data), params, data);
        const float clockFreq = getClockFreq(params, data);
        const double ratio = voltageRatio(kVccram, params, data);
        // Divided before the product, in single precision, where segments and leaves are divided behind it.
        const double kiloMegahertz = clockFreq / 1000.0f;
        return mix * (kiloMegahertz * ratio);
    });
}

float ZelmOrvaneClkDistModel::calculateClkBufVccramPwr(Params& params, const Data& data) const
{
    return once(params[Params::CLK_BUF_VCCRAM_PWR], [&] {
        const float vccram = getVccram(params, data);
        const float buffer = calculateBufferCur(params, data);
        return vccram * buffer;
    });
}

float ZelmOrvaneClkDistModel::calculateClkNetworkVccramPwr(Params& params, const Data& data) const
{
    return once(params[Params::CLK_NETWORK_VCCRAM_PWR], [&] {
        const float vccram = getVccram(params, data);
        const float hr = calculateHrCur(params, data);
        const float vr = calculateVrCur(params, data);
        const float vrSsit = calculateVrSsitCur(params, data);
        const float vd = calculateVdCur(params, data);
        const float vdSsit = calculateVdSsitCur(params, data);
        const float vdL1 = calculateVdL1Cur(params, data);
        const float vdL2 = calculateVdL2Cur(params, data);
        const float hd = calculateHdCur(params, data);
        const float hdHsr = calculateHdHsrCur(params, data);
        return vccram * (hr + vr + vrSsit + vd + vdSsit + vdL1 + vdL2 + hd + hdHsr);
    });
}

float ZelmOrvaneClkDistModel::calculateClkNetworkVccintPwr(Params& params, const Data& data) const
{
    return once(params[Params::CLK_NETWORK_VCCINT_PWR], [&] {
        const float vccint = getVccint(params, data);
        const float hdLoc = calculateHdLocCur(params, data);
        const float leaf1 = calculateLeaf1Cur(params, data);
        const float leaf2 = calculateLeaf2Cur(params, data);
        const float leaf4 = calculateLeaf4Cur(params, data);
        const float leaf8 = calculateLeaf8Cur(params, data);
        return vccint * (hdLoc + leaf1 + leaf2 + leaf4 + leaf8);
    });
}
