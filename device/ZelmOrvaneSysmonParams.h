#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneSysmonCells {
    static constexpr std::string_view name = "ZelmOrvaneSysmonParams";
#define ZELM_CELL_ROWS "device/ZelmOrvaneSysmonCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneSysmonCells>;

/// The cells of one device's monitor network.
class ZELM_EXPORT ZelmOrvaneSysmonParams final : public ZelmParamBlock<ZelmOrvaneSysmonCells> {};
