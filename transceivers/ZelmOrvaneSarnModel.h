#pragma once

#include "framework/ZelmModelBlock.h"
#include "transceivers/ZelmOrvaneSarnData.h"
#include "transceivers/ZelmOrvaneSarnParams.h"

class ZELM_EXPORT ZelmOrvaneSarnModel;
extern template class ZelmModelBlock<ZelmOrvaneSarnModel, ZelmOrvaneSarnParams, ZelmOrvaneSarnData>;

/// Power of one channel of the PAM4 transceiver, of the channels that share its clock and reference.
class ZELM_EXPORT ZelmOrvaneSarnModel final
    : public ZelmModelBlock<ZelmOrvaneSarnModel, ZelmOrvaneSarnParams, ZelmOrvaneSarnData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneSarnModel";

#define ZELM_CELL_ROWS "transceivers/ZelmOrvaneSarnCells.def"
#include "framework/ZelmCellFunctions.inc"
};
