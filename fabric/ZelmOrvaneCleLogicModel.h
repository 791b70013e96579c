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

    void pullOutputs(Params& params, const Data& data) const;

private:
    struct Pin;
    struct AddressPin;
    static const AddressPin kA1, kA2, kA3, kA4, kA5;
    static const Pin kA6, kByp, kCoutb, kCoutd, kCoutf, kCouth, kOfmux, kOp;

    float signalRate(Params& params, const Data& data) const;
    float frequency(const Pin& pin, Params& params, const Data& data) const;
    float pinComponent(const Pin& pin, Params& params, const Data& data) const;
    float internalComponent(const AddressPin& pin, Params& params, const Data& data) const;
    double power(float capFreq, Params& params, const Data& data) const;
    double ofmuxPower(int multiplexers, Params& params, const Data& data) const;
    double groupPower(float elementPower, Params& params, const Data& data) const;
};
