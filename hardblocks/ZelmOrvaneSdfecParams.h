#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneSdfecCells {
    static constexpr std::string_view name = "ZelmOrvaneSdfecParams";
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneSdfecCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneSdfecCells>;

/// The cells of one forward-error-correction core.
class ZELM_EXPORT ZelmOrvaneSdfecParams final : public ZelmParamBlock<ZelmOrvaneSdfecCells> {};
