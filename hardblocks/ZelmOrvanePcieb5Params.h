#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvanePcieb5Cells {
    static constexpr std::string_view name = "ZelmOrvanePcieb5Params";
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvanePcieb5Cells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvanePcieb5Cells>;

/// The cells of one newer PCIe block.
class ZELM_EXPORT ZelmOrvanePcieb5Params final : public ZelmParamBlock<ZelmOrvanePcieb5Cells> {};
