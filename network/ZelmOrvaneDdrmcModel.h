#pragma once

#include "framework/ZelmModelBlock.h"
#include "network/ZelmOrvaneDdrmcData.h"
#include "network/ZelmOrvaneDdrmcParams.h"

class ZELM_EXPORT ZelmOrvaneDdrmcModel;
extern template class ZelmModelBlock<ZelmOrvaneDdrmcModel, ZelmOrvaneDdrmcParams, ZelmOrvaneDdrmcData>;

/// Power of one DDR memory controller: that of its characterised configuration, scaled to its use.
class ZELM_EXPORT ZelmOrvaneDdrmcModel final
    : public ZelmModelBlock<ZelmOrvaneDdrmcModel, ZelmOrvaneDdrmcParams, ZelmOrvaneDdrmcData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDdrmcModel";

#define ZELM_CELL_ROWS "network/ZelmOrvaneDdrmcCells.def"
#include "framework/ZelmCellFunctions.inc"
};
