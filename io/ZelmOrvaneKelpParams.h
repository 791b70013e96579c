#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneKelpCells {
    static constexpr std::string_view name = "ZelmOrvaneKelpParams";
#define ZELM_CELL_ROWS "io/ZelmOrvaneKelpCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneKelpCells>;

/// The cells of one nibble of a high-performance bank, or of a bus over several.
class ZELM_EXPORT ZelmOrvaneKelpParams final : public ZelmParamBlock<ZelmOrvaneKelpCells> {};
