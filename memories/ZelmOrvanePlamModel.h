#pragma once

#include "framework/ZelmModelBlock.h"
#include "memories/ZelmOrvanePlamData.h"
#include "memories/ZelmOrvanePlamParams.h"

class ZELM_EXPORT ZelmOrvanePlamModel;
extern template class ZelmModelBlock<ZelmOrvanePlamModel, ZelmOrvanePlamParams, ZelmOrvanePlamData>;

/// Power of like large cascadable RAMs: what share of the cycles a memory reads, writes, stands by and sleeps, each
/// priced by the events it causes. Most inputs derive from others unless they are set.
class ZELM_EXPORT ZelmOrvanePlamModel final
    : public ZelmModelBlock<ZelmOrvanePlamModel, ZelmOrvanePlamParams, ZelmOrvanePlamData> {
public:
    static constexpr std::string_view name = "ZelmOrvanePlamModel";

#define ZELM_CELL_ROWS "memories/ZelmOrvanePlamCells.def"
#include "framework/ZelmCellFunctions.inc"
};
