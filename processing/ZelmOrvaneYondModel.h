#pragma once

#include "framework/ZelmModelBlock.h"
#include "processing/ZelmOrvaneYondData.h"
#include "processing/ZelmOrvaneYondParams.h"
#include "processing/ZelmProcessingForms.h"

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

    void pullOutputs(Params& params, const Data& data) const;

private:
    struct Rail;
    struct ClockedItem;
    struct Controller;
    struct Memory;
    struct Pll;
    struct Bank;
    struct Supply;
    struct GemPads;
    struct Rows; // of all families
    using Sum = zelm::SumRow<ZelmOrvaneYondModel>;

    float sum(const Sum& row, Params& params, const Data& data) const;
    float scaling(const Rail& rail, Params& params, const Data& data) const;
    float clocked(const ClockedItem& item, Params& params, const Data& data) const;
    float controller(const Controller& gem, Params& params, const Data& data) const;
    float memory(const Memory& ram, Params& params, const Data& data) const;

    float pllCore(const Pll& pll, Params& params, const Data& data) const;
    float pllAux(const Pll& pll, Params& params, const Data& data) const;

    int bidis(const Bank& bank, Params& params, const Data& data) const;
    int inputs(const Bank& bank, Params& params, const Data& data) const;
    int outputs(const Bank& bank, Params& params, const Data& data) const;
    float bias(const Bank& bank, Params& params, const Data& data) const;

    float core(const GemPads& pads, Params& params, const Data& data) const;
    float vccint(const GemPads& pads, Params& params, const Data& data) const;
    float mio18(const GemPads& pads, Params& params, const Data& data) const;
    float mio25(const GemPads& pads, Params& params, const Data& data) const;
    float mio33(const GemPads& pads, Params& params, const Data& data) const;
    float mio(const GemPads& pads, const Supply& supply, Params& params, const Data& data) const;
    float lowSpeedMio(const Supply& supply, Params& params, const Data& data) const;
};
