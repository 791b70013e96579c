#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneNemtCells {
    static constexpr std::string_view name = "ZelmOrvaneNemtParams";
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneNemtCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneNemtCells>;

/// The cells of a device's compute array.
class ZELM_EXPORT ZelmOrvaneNemtParams final : public ZelmParamBlock<ZelmOrvaneNemtCells> {};
