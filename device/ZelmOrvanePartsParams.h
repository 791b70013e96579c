#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvanePartsCells {
    static constexpr std::string_view name = "ZelmOrvanePartsParams";
#define ZELM_CELL_ROWS "device/ZelmOrvanePartsCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvanePartsCells>;

/// One question to the catalogue: a part, its series and a kind of resource.
class ZELM_EXPORT ZelmOrvanePartsParams final : public ZelmParamBlock<ZelmOrvanePartsCells> {};
