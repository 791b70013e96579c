#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneSarnCells {
    static constexpr std::string_view name = "ZelmOrvaneSarnParams";
#define ZELM_CELL_ROWS "transceivers/ZelmOrvaneSarnCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneSarnCells>;

/// The cells of one channel of the PAM4 transceiver.
class ZELM_EXPORT ZelmOrvaneSarnParams final : public ZelmParamBlock<ZelmOrvaneSarnCells> {};
