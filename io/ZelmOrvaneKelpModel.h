#pragma once

#include "framework/ZelmModelBlock.h"
#include "io/ZelmOrvaneKelpData.h"
#include "io/ZelmOrvaneKelpParams.h"

class ZELM_EXPORT ZelmOrvaneKelpModel;
extern template class ZelmModelBlock<ZelmOrvaneKelpModel, ZelmOrvaneKelpParams, ZelmOrvaneKelpData>;

/// Power of the bitslices behind the pins of a high-performance bank: a nibble serves up to six I/Os, and slices that
/// are powered but unused count through a delta current.
class ZELM_EXPORT ZelmOrvaneKelpModel final
    : public ZelmModelBlock<ZelmOrvaneKelpModel, ZelmOrvaneKelpParams, ZelmOrvaneKelpData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneKelpModel";

#define ZELM_CELL_ROWS "io/ZelmOrvaneKelpCells.def"
#include "framework/ZelmCellFunctions.inc"
};
