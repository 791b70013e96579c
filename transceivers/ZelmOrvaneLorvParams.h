#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneLorvCells {
    static constexpr std::string_view name = "ZelmOrvaneLorvParams";
#define ZELM_CELL_ROWS "transceivers/ZelmOrvaneLorvCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneLorvCells>;

/// The cells of one channel of the transceiver.
class ZELM_EXPORT ZelmOrvaneLorvParams final : public ZelmParamBlock<ZelmOrvaneLorvCells> {};
