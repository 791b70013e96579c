#pragma once

#include "framework/ZelmModelBlock.h"
#include "processing/ZelmOrvaneHarlData.h"
#include "processing/ZelmOrvaneHarlParams.h"
#include "processing/ZelmProcessingForms.h"

class ZELM_EXPORT ZelmOrvaneHarlModel;
extern template class ZelmModelBlock<ZelmOrvaneHarlModel, ZelmOrvaneHarlParams, ZelmOrvaneHarlData>;

/// Dynamic power of platform management: its interconnect and I/O unit, its PLL and the memory network's, the pads of
/// two banks and of the dedicated pins, and the analog and monitor cells.
class ZELM_EXPORT ZelmOrvaneHarlModel final
    : public ZelmModelBlock<ZelmOrvaneHarlModel, ZelmOrvaneHarlParams, ZelmOrvaneHarlData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneHarlModel";

#define ZELM_CELL_ROWS "processing/ZelmOrvaneHarlCells.def"
#include "framework/ZelmCellFunctions.inc"

    void pullOutputs(Params& params, const Data& data) const;

private:
    struct ClockedItem;
    struct Pll;
    struct Counts;
    struct Pads;
    struct Supply;
    struct Port;
    struct Rows; // of all families
    using Sum = zelm::SumRow<ZelmOrvaneHarlModel>;

    float sum(const Sum& row, Params& params, const Data& data) const;
    float clocked(const ClockedItem& item, Params& params, const Data& data) const;
    float pllCore(const Pll& pll, Params& params, const Data& data) const;
    float pllAux(const Pll& pll, Params& params, const Data& data) const;

    float auxPower(const Pads& pads, Params& params, const Data& data) const;
    float vccint(const Pads& pads, Params& params, const Data& data) const;
    float vccaux(const Pads& pads, Params& params, const Data& data) const;
    float vccauxInUse(const Pads& pads, Params& params, const Data& data) const;

    float rail(const Port& port, Params& params, const Data& data) const;
    float mio18(const Port& port, Params& params, const Data& data) const;
    float mio25(const Port& port, Params& params, const Data& data) const;
    float mio33(const Port& port, Params& params, const Data& data) const;
    float mio(const Port& port, const Supply& supply, Params& params, const Data& data) const;
    float fio(const Supply& supply, Params& params, const Data& data) const;
};
