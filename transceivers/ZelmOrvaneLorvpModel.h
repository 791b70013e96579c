#pragma once

#include "framework/ZelmModelBlock.h"
#include "transceivers/ZelmOrvaneLorvpData.h"
#include "transceivers/ZelmOrvaneLorvpParams.h"

class ZELM_EXPORT ZelmOrvaneLorvpModel;
extern template class ZelmModelBlock<ZelmOrvaneLorvpModel, ZelmOrvaneLorvpParams, ZelmOrvaneLorvpData>;

/// Power of one channel of the enhanced transceiver: as the transceiver, but for the common share and the counts.
class ZELM_EXPORT ZelmOrvaneLorvpModel final
    : public ZelmModelBlock<ZelmOrvaneLorvpModel, ZelmOrvaneLorvpParams, ZelmOrvaneLorvpData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneLorvpModel";

#define ZELM_CELL_ROWS "transceivers/ZelmOrvaneLorvpCells.def"
#include "framework/ZelmCellFunctions.inc"
};
