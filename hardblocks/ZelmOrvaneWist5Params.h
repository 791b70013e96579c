#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneWist5Cells {
    static constexpr std::string_view name = "ZelmOrvaneWist5Params";
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneWist5Cells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneWist5Cells>;

/// The cells of one newer coherent PCIe module with its controllers A0 and A1.
class ZELM_EXPORT ZelmOrvaneWist5Params final : public ZelmParamBlock<ZelmOrvaneWist5Cells> {};
