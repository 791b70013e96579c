#pragma once

#include "framework/ZelmModelBlock.h"
#include "hardblocks/ZelmOrvaneSdfecData.h"
#include "hardblocks/ZelmOrvaneSdfecParams.h"

class ZELM_EXPORT ZelmOrvaneSdfecModel;
extern template class ZelmModelBlock<ZelmOrvaneSdfecModel, ZelmOrvaneSdfecParams, ZelmOrvaneSdfecData>;

/// Power of a forward-error-correction core at its data rate.
class ZELM_EXPORT ZelmOrvaneSdfecModel final
    : public ZelmModelBlock<ZelmOrvaneSdfecModel, ZelmOrvaneSdfecParams, ZelmOrvaneSdfecData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneSdfecModel";

#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneSdfecCells.def"
#include "framework/ZelmCellFunctions.inc"
};
