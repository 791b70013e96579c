#pragma once

#include "framework/ZelmModelBlock.h"
#include "io/ZelmOrvaneSelvData.h"
#include "io/ZelmOrvaneSelvParams.h"

class ZELM_EXPORT ZelmOrvaneSelvModel;
extern template class ZelmModelBlock<ZelmOrvaneSelvModel, ZelmOrvaneSelvParams, ZelmOrvaneSelvData>;

/// Power of a group of high-performance I/O buffers, per pin: on chip by rail, and off chip. Every standard's cells are
/// computed; the names of the group's two standards select which of them reach the outputs.
class ZELM_EXPORT ZelmOrvaneSelvModel final
    : public ZelmModelBlock<ZelmOrvaneSelvModel, ZelmOrvaneSelvParams, ZelmOrvaneSelvData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneSelvModel";

#define ZELM_CELL_ROWS "io/ZelmOrvaneSelvCells.def"
#include "framework/ZelmCellFunctions.inc"
};
