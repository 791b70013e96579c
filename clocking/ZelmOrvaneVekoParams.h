#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneVekoCells {
    static constexpr std::string_view name = "ZelmOrvaneVekoParams";
#define ZELM_CELL_ROWS "clocking/ZelmOrvaneVekoCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneVekoCells>;

/// The cells of one mixed-mode clock manager.
class ZELM_EXPORT ZelmOrvaneVekoParams final : public ZelmParamBlock<ZelmOrvaneVekoCells> {};
