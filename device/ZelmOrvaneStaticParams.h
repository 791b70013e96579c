#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneStaticCells {
    static constexpr std::string_view name = "ZelmOrvaneStaticParams";
#define ZELM_CELL_ROWS "device/ZelmOrvaneStaticCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneStaticCells>;

/// The cells of one device: its grades, temperature, rail voltages and used resources, and the leakage that follows.
class ZELM_EXPORT ZelmOrvaneStaticParams final : public ZelmParamBlock<ZelmOrvaneStaticCells> {};
