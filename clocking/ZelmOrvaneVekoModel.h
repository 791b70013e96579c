#pragma once

#include "clocking/ZelmOrvaneVekoData.h"
#include "clocking/ZelmOrvaneVekoParams.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneVekoModel;
extern template class ZelmModelBlock<ZelmOrvaneVekoModel, ZelmOrvaneVekoParams, ZelmOrvaneVekoData>;

/// Power of a mixed-mode clock manager on VCCAUX, which feeds the analogue part, and on VCCRAM, which feeds the rest.
class ZELM_EXPORT ZelmOrvaneVekoModel final
    : public ZelmModelBlock<ZelmOrvaneVekoModel, ZelmOrvaneVekoParams, ZelmOrvaneVekoData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneVekoModel";

#define ZELM_CELL_ROWS "clocking/ZelmOrvaneVekoCells.def"
#include "framework/ZelmCellFunctions.inc"
};
