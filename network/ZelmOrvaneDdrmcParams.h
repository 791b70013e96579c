#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneDdrmcCells {
    static constexpr std::string_view name = "ZelmOrvaneDdrmcParams";
#define ZELM_CELL_ROWS "network/ZelmOrvaneDdrmcCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneDdrmcCells>;

/// The cells of one DDR memory controller.
class ZELM_EXPORT ZelmOrvaneDdrmcParams final : public ZelmParamBlock<ZelmOrvaneDdrmcCells> {};
