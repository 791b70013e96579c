#include "fabric/ZelmOrvaneClkDistModel.h"

#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneClkDistModel
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneClkDistCells.def"
#define ZELM_TABLE_ROWS "fabric/ZelmOrvaneClkDistTables.def"

namespace {

using Params = ZelmOrvaneClkDistParams;
using zelm::Key;

struct Rail {
    Key key; // in SIM_VOLTAGE
    Params::FloatEnum volts;
};

struct Segment {
    Key key; // in CURRENT
    Params::IntEnum count;
    const Rail& rail;
    Params::FloatEnum segmentCurrent;
};

// A leaf node; the more loads share it, the less each is charged.
struct Leaf {
    Params::IntEnum count;
    double divisor; // microamperes per milliampere x sharing loads
    Params::FloatEnum leafCurrent;
};

constexpr Rail kVccint{"VCCINT", Params::VCCINT};
constexpr Rail kVccram{"VCCRAM", Params::VCCRAM};

constexpr Segment kHd{"HD", Params::HD_COUNT, kVccram, Params::HD_CUR};
constexpr Segment kHdHsr{"HD_HSR", Params::HD_HSR_COUNT, kVccram, Params::HD_HSR_CUR};
constexpr Segment kHdLoc{"HD_LOC", Params::HD_LOC_COUNT, kVccint, Params::HD_LOC_CUR};
constexpr Segment kHr{"HR", Params::HR_COUNT, kVccram, Params::HR_CUR};
constexpr Segment kVd{"VD", Params::VD_COUNT, kVccram, Params::VD_CUR};
constexpr Segment kVdL1{"VD_L1", Params::VD_L1_COUNT, kVccram, Params::VD_L1_CUR};
constexpr Segment kVdL2{"VD_L2", Params::VD_L2_COUNT, kVccram, Params::VD_L2_CUR};
constexpr Segment kVdSsit{"VD_SSIT", Params::VD_SSIT_COUNT, kVccram, Params::VD_SSIT_CUR};
constexpr Segment kVr{"VR", Params::VR_COUNT, kVccram, Params::VR_CUR};
constexpr Segment kVrSsit{"VR_SSIT", Params::VR_SSIT_COUNT, kVccram, Params::VR_SSIT_CUR};

constexpr Leaf kLeaf1{Params::LEAF_1_COUNT, 1000.0, Params::LEAF_1_CUR};
constexpr Leaf kLeaf2{Params::LEAF_2_COUNT, 2000.0, Params::LEAF_2_CUR};
constexpr Leaf kLeaf4{Params::LEAF_4_COUNT, 4000.0, Params::LEAF_4_CUR};
constexpr Leaf kLeaf8{Params::LEAF_8_COUNT, 8000.0, Params::LEAF_8_CUR};

} // namespace

struct ZelmOrvaneClkDistModel::Sheet : zelm::Sheet<ZelmOrvaneClkDistModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        ClkNetworkVccintPwr();
        ClkNetworkVccramPwr();
        ClkBufVccramPwr();
        BufferCur();
        HrCur();
        VrCur();
        VrSsitCur();
        HdCur();
        HdHsrCur();
        VdCur();
        VdL1Cur();
        VdL2Cur();
        VdSsitCur();
        HdLocCur();
        Leaf1Cur();
        Leaf2Cur();
        Leaf4Cur();
        Leaf8Cur();
    }

    float gatedMix(const Key& node) const
    {
        const float gating = GatingProb();
        const float gated = findCurrent(node, "GATED");
        const float ungated = findCurrent(node, "UNGATED");
        return (1.0f - gating) * ungated + gating * gated;
    }

    // A current scales with the voltage, not with its square; the power takes the second factor.
    double voltageRatio(const Rail& rail) const
    {
        const float volts = value(rail.volts);
        const float simulated = findSimVoltage(rail.key);
        return zelm::ratioOrZero(volts, simulated);
    }

    // In microamperes.
    double networkCurrent(const Key& node, int count, const Rail& rail) const
    {
        const float clockFreq = ClockFreq();
        const double mix = gatedMix(node);
        const double ratio = voltageRatio(rail);
        const double rate = static_cast<float>(count) * clockFreq;
        return mix * (rate * ratio);
    }

    double segmentCurrent(const Segment& segment) const
    {
        const int count = value(segment.count);
        // Narrowed in microamperes already, where leaves aren't: results must match the characterisation workbook.
        const float microamperes = static_cast<float>(networkCurrent(segment.key, count, segment.rail));
        return static_cast<double>(microamperes) / 1000.0;
    }

    double leafCurrent(const Leaf& leaf) const
    {
        const int count = value(leaf.count);
        return networkCurrent("LEAF", count, kVccint) / leaf.divisor;
    }

    double computeBufferCur() const
    {
        const double mix = gatedMix(BufType());
        const float clockFreq = ClockFreq();
        const double ratio = voltageRatio(kVccram);
        // Divided before the product, in single precision, where segments and leaves are divided behind it.
        const double kiloMegahertz = clockFreq / 1000.0f;
        return mix * (kiloMegahertz * ratio);
    }

    float computeClkBufVccramPwr() const
    {
        const float vccram = Vccram();
        const float buffer = BufferCur();
        return vccram * buffer;
    }

    float computeClkNetworkVccramPwr() const
    {
        const float vccram = Vccram();
        const float hr = HrCur();
        const float vr = VrCur();
        const float vrSsit = VrSsitCur();
        const float vd = VdCur();
        const float vdSsit = VdSsitCur();
        const float vdL1 = VdL1Cur();
        const float vdL2 = VdL2Cur();
        const float hd = HdCur();
        const float hdHsr = HdHsrCur();
        return vccram * (hr + vr + vrSsit + vd + vdSsit + vdL1 + vdL2 + hd + hdHsr);
    }

    float computeClkNetworkVccintPwr() const
    {
        const float vccint = Vccint();
        const float hdLoc = HdLocCur();
        const float leaf1 = Leaf1Cur();
        const float leaf2 = Leaf2Cur();
        const float leaf4 = Leaf4Cur();
        const float leaf8 = Leaf8Cur();
        return vccint * (hdLoc + leaf1 + leaf2 + leaf4 + leaf8);
    }
};

#include "framework/ZelmModelBodies.inc"
