#pragma once

#include "device/ZelmOrvaneStaticData.h"
#include "device/ZelmOrvaneStaticParams.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneStaticModel;
extern template class ZelmModelBlock<ZelmOrvaneStaticModel, ZelmOrvaneStaticParams, ZelmOrvaneStaticData>;

/// Leakage of the whole device, by rail. One network of cells: what a resource leaks on a rail, the rails' sums,
/// totals.
class ZELM_EXPORT ZelmOrvaneStaticModel final
    : public ZelmModelBlock<ZelmOrvaneStaticModel, ZelmOrvaneStaticParams, ZelmOrvaneStaticData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneStaticModel";

#define ZELM_CELL_ROWS "device/ZelmOrvaneStaticCells.def"
#include "framework/ZelmCellFunctions.inc"
};
