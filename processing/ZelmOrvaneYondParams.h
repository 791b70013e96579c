#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneYondCells {
    static constexpr std::string_view name = "ZelmOrvaneYondParams";
#define ZELM_CELL_ROWS "processing/ZelmOrvaneYondCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneYondCells>;

/// The cells of one processing system.
class ZELM_EXPORT ZelmOrvaneYondParams final : public ZelmParamBlock<ZelmOrvaneYondCells> {};
