#pragma once

#include "framework/ZelmModelBlock.h"
#include "transceivers/ZelmOrvaneLorvData.h"
#include "transceivers/ZelmOrvaneLorvParams.h"

class ZELM_EXPORT ZelmOrvaneLorvModel;
extern template class ZelmModelBlock<ZelmOrvaneLorvModel, ZelmOrvaneLorvParams, ZelmOrvaneLorvData>;

/// Power of one channel of the transceiver, of the channels in its quads. The host multiplies by the channels.
class ZELM_EXPORT ZelmOrvaneLorvModel final
    : public ZelmModelBlock<ZelmOrvaneLorvModel, ZelmOrvaneLorvParams, ZelmOrvaneLorvData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneLorvModel";

#define ZELM_CELL_ROWS "transceivers/ZelmOrvaneLorvCells.def"
#include "framework/ZelmCellFunctions.inc"
};
