#pragma once

#include "framework/ZelmModelBlock.h"
#include "processing/ZelmOrvaneYondData.h"
#include "processing/ZelmOrvaneYondParams.h"

class ZELM_EXPORT ZelmOrvaneYondModel;
extern template class ZelmModelBlock<ZelmOrvaneYondModel, ZelmOrvaneYondParams, ZelmOrvaneYondData>;

/// Dynamic power of the processing system: what runs in its full-power and low-power domains, and the pads of its I/O
/// bank. Gate flags count as set only at exactly 1, ON_OFF flags as off only at 0.
class ZELM_EXPORT ZelmOrvaneYondModel final
    : public ZelmModelBlock<ZelmOrvaneYondModel, ZelmOrvaneYondParams, ZelmOrvaneYondData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneYondModel";

#define ZELM_CELL_ROWS "processing/ZelmOrvaneYondCells.def"
#include "framework/ZelmCellFunctions.inc"
};
