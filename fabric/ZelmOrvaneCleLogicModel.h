#pragma once

#include "fabric/ZelmOrvaneCleLogicData.h"
#include "fabric/ZelmOrvaneCleLogicParams.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneCleLogicModel;
extern template class ZelmModelBlock<ZelmOrvaneCleLogicModel, ZelmOrvaneCleLogicParams, ZelmOrvaneCleLogicData>;

/// Dynamic power of logic elements: the charge that their pins and internal nodes move at each toggle.
class ZELM_EXPORT ZelmOrvaneCleLogicModel final
    : public ZelmModelBlock<ZelmOrvaneCleLogicModel, ZelmOrvaneCleLogicParams, ZelmOrvaneCleLogicData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneCleLogicModel";

#define ZELM_CELL_ROWS "fabric/ZelmOrvaneCleLogicCells.def"
#include "framework/ZelmCellFunctions.inc"
};
