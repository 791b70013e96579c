#pragma once

#include "framework/ZelmModelBlock.h"
#include "hardblocks/ZelmOrvaneWist5Data.h"
#include "hardblocks/ZelmOrvaneWist5Params.h"

class ZELM_EXPORT ZelmOrvaneWist5Model;
extern template class ZelmModelBlock<ZelmOrvaneWist5Model, ZelmOrvaneWist5Params, ZelmOrvaneWist5Data>;

/// Power of the newer coherent PCIe module; its clocks follow from link speeds and modes by fixed rules.
class ZELM_EXPORT ZelmOrvaneWist5Model final
    : public ZelmModelBlock<ZelmOrvaneWist5Model, ZelmOrvaneWist5Params, ZelmOrvaneWist5Data> {
public:
    static constexpr std::string_view name = "ZelmOrvaneWist5Model";

#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneWist5Cells.def"
#include "framework/ZelmCellFunctions.inc"
};
