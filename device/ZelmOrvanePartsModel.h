#pragma once

#include "device/ZelmOrvanePartsData.h"
#include "device/ZelmOrvanePartsParams.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvanePartsModel;
extern template class ZelmModelBlock<ZelmOrvanePartsModel, ZelmOrvanePartsParams, ZelmOrvanePartsData>;

/// The device catalogue: whether a part is supported, its device-and-package string, and its units of a resource.
class ZELM_EXPORT ZelmOrvanePartsModel final
    : public ZelmModelBlock<ZelmOrvanePartsModel, ZelmOrvanePartsParams, ZelmOrvanePartsData> {
public:
    static constexpr std::string_view name = "ZelmOrvanePartsModel";

#define ZELM_CELL_ROWS "device/ZelmOrvanePartsCells.def"
#include "framework/ZelmCellFunctions.inc"
};
