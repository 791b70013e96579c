#pragma once

#include "dsp/ZelmOrvaneDspConfigData.h"
#include "dsp/ZelmOrvaneDspConfigParams.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneDspConfigModel;
extern template class ZelmModelBlock<ZelmOrvaneDspConfigModel, ZelmOrvaneDspConfigParams, ZelmOrvaneDspConfigData>;

/// The display-level mode of a DSP slice: hands on the designer's choice.
class ZELM_EXPORT ZelmOrvaneDspConfigModel final
    : public ZelmModelBlock<ZelmOrvaneDspConfigModel, ZelmOrvaneDspConfigParams, ZelmOrvaneDspConfigData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDspConfigModel";

#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspConfigCells.def"
#include "framework/ZelmCellFunctions.inc"
};
