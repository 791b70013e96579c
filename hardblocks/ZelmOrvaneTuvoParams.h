#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneTuvoCells {
    static constexpr std::string_view name = "ZelmOrvaneTuvoParams";
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneTuvoCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneTuvoCells>;

/// The cells of one multi-rate Ethernet MAC.
class ZELM_EXPORT ZelmOrvaneTuvoParams final : public ZelmParamBlock<ZelmOrvaneTuvoCells> {};
