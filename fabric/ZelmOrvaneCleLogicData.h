#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneCleLogicData;
extern template class ZelmDataBlock<ZelmOrvaneCleLogicData>;

/// Capacitances of the logic elements: look-up tables, registers, multiplexers, carry logic.
class ZELM_EXPORT ZelmOrvaneCleLogicData final : public ZelmDataBlock<ZelmOrvaneCleLogicData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneCleLogicData";

    ZelmOrvaneCleLogicData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "fabric/ZelmOrvaneCleLogicTables.def"
#include "framework/ZelmTableMembers.inc"
};
