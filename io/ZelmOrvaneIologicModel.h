#pragma once

#include "framework/ZelmModelBlock.h"
#include "io/ZelmOrvaneIologicData.h"
#include "io/ZelmOrvaneIologicParams.h"

class ZELM_EXPORT ZelmOrvaneIologicModel;
extern template class ZelmModelBlock<ZelmOrvaneIologicModel, ZelmOrvaneIologicParams, ZelmOrvaneIologicData>;

/// Core-rail power of the input and output registers beside the I/O buffers.
class ZELM_EXPORT ZelmOrvaneIologicModel final
    : public ZelmModelBlock<ZelmOrvaneIologicModel, ZelmOrvaneIologicParams, ZelmOrvaneIologicData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneIologicModel";

#define ZELM_CELL_ROWS "io/ZelmOrvaneIologicCells.def"
#include "framework/ZelmCellFunctions.inc"
};
