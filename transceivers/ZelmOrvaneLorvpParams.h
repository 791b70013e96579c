#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneLorvpCells {
    static constexpr std::string_view name = "ZelmOrvaneLorvpParams";
#define ZELM_CELL_ROWS "transceivers/ZelmOrvaneLorvpCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneLorvpCells>;

/// The cells of one channel of the enhanced transceiver.
class ZELM_EXPORT ZelmOrvaneLorvpParams final : public ZelmParamBlock<ZelmOrvaneLorvpCells> {};
