#pragma once

#include "fabric/ZelmOrvaneClkDistData.h"
#include "fabric/ZelmOrvaneClkDistParams.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneClkDistModel;
extern template class ZelmModelBlock<ZelmOrvaneClkDistModel, ZelmOrvaneClkDistParams, ZelmOrvaneClkDistData>;

/// Currents and powers of a clock net's way from its root buffer to the leaves.
class ZELM_EXPORT ZelmOrvaneClkDistModel final
    : public ZelmModelBlock<ZelmOrvaneClkDistModel, ZelmOrvaneClkDistParams, ZelmOrvaneClkDistData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneClkDistModel";

#define ZELM_CELL_ROWS "fabric/ZelmOrvaneClkDistCells.def"
#include "framework/ZelmCellFunctions.inc"

    void pullOutputs(Params& params, const Data& data) const;

private:
    struct Rail;
    struct Segment;
    struct Leaf;
    static const Rail kVccint, kVccram;
    static const Segment kHd, kHdHsr, kHdLoc, kHr, kVd, kVdL1, kVdL2, kVdSsit, kVr, kVrSsit;
    static const Leaf kLeaf1, kLeaf2, kLeaf4, kLeaf8;

    float segmentCurrent(const Segment& segment, Params& params, const Data& data) const;
    float leafCurrent(const Leaf& leaf, Params& params, const Data& data) const;
    double networkCurrent(std::string_view node, int count, const Rail& rail, Params& params, const Data& data) const;
    float gatedMix(std::string_view node, Params& params, const Data& data) const;
    double voltageRatio(const Rail& rail, Params& params, const Data& data) const;
};
