#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneIlknCells {
    static constexpr std::string_view name = "ZelmOrvaneIlknParams";
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneIlknCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneIlknCells>;

/// The cells of one group of like Interlaken cores.
class ZELM_EXPORT ZelmOrvaneIlknParams final : public ZelmParamBlock<ZelmOrvaneIlknCells> {};
