#pragma once

#include "framework/ZelmDataBlock.h"
#include "framework/ZelmModelBlock.h"
#include "framework/ZelmParamBlock.h"

struct ZelmOrvaneGaugeCells {
    static constexpr std::string_view name = "ZelmOrvaneGaugeParams";
#define ZELM_CELL_ROWS "framework/ZelmOrvaneGaugeCells.def"
#include "framework/ZelmCellEnums.inc"
};
extern template class ZelmParamBlock<ZelmOrvaneGaugeCells>;
class ZelmOrvaneGaugeParams final : public ZelmParamBlock<ZelmOrvaneGaugeCells> {};

class ZelmOrvaneGaugeData;
extern template class ZelmDataBlock<ZelmOrvaneGaugeData>;
class ZelmOrvaneGaugeData final : public ZelmDataBlock<ZelmOrvaneGaugeData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneGaugeData";

    ZelmOrvaneGaugeData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "framework/ZelmOrvaneGaugeTables.def"
#include "framework/ZelmTableMembers.inc"
};

class ZelmOrvaneGaugeModel;
extern template class ZelmModelBlock<ZelmOrvaneGaugeModel, ZelmOrvaneGaugeParams, ZelmOrvaneGaugeData>;
class ZelmOrvaneGaugeModel final
    : public ZelmModelBlock<ZelmOrvaneGaugeModel, ZelmOrvaneGaugeParams, ZelmOrvaneGaugeData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneGaugeModel";

#define ZELM_CELL_ROWS "framework/ZelmOrvaneGaugeCells.def"
#include "framework/ZelmCellFunctions.inc"
};

/// A block without cells and tables: every group is empty.
struct ZelmOrvaneVoidCells {
    static constexpr std::string_view name = "ZelmOrvaneVoidParams";
#define ZELM_CELL_ROWS "framework/ZelmOrvaneVoidCells.def"
#include "framework/ZelmCellEnums.inc"
};
extern template class ZelmParamBlock<ZelmOrvaneVoidCells>;
class ZelmOrvaneVoidParams final : public ZelmParamBlock<ZelmOrvaneVoidCells> {};
