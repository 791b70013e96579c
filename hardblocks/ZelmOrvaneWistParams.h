#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneWistCells {
    static constexpr std::string_view name = "ZelmOrvaneWistParams";
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneWistCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneWistCells>;

/// The cells of one coherent PCIe module with its controllers A0 and A1.
class ZELM_EXPORT ZelmOrvaneWistParams final : public ZelmParamBlock<ZelmOrvaneWistCells> {};
