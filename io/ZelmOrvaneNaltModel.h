#pragma once

#include "framework/ZelmModelBlock.h"
#include "io/ZelmOrvaneNaltData.h"
#include "io/ZelmOrvaneNaltParams.h"

class ZELM_EXPORT ZelmOrvaneNaltModel;
extern template class ZelmModelBlock<ZelmOrvaneNaltModel, ZelmOrvaneNaltParams, ZelmOrvaneNaltData>;

/// Power of a group of high-density I/O buffers, per pin: on chip by rail, and off chip. Every standard's cells are
/// computed; the names of the group's two standards select which of them reach the outputs.
class ZELM_EXPORT ZelmOrvaneNaltModel final
    : public ZelmModelBlock<ZelmOrvaneNaltModel, ZelmOrvaneNaltParams, ZelmOrvaneNaltData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneNaltModel";

#define ZELM_CELL_ROWS "io/ZelmOrvaneNaltCells.def"
#include "framework/ZelmCellFunctions.inc"
};
