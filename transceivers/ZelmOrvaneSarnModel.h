#pragma once

#include "framework/ZelmModelBlock.h"
#include "transceivers/ZelmOrvaneSarnData.h"
#include "transceivers/ZelmOrvaneSarnParams.h"

class ZELM_EXPORT ZelmOrvaneSarnModel;
extern template class ZelmModelBlock<ZelmOrvaneSarnModel, ZelmOrvaneSarnParams, ZelmOrvaneSarnData>;

/// Power of one channel of the PAM4 transceiver, of the channels that share its clock and reference.
class ZELM_EXPORT ZelmOrvaneSarnModel final
    : public ZelmModelBlock<ZelmOrvaneSarnModel, ZelmOrvaneSarnParams, ZelmOrvaneSarnData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneSarnModel";

#define ZELM_CELL_ROWS "transceivers/ZelmOrvaneSarnCells.def"
#include "framework/ZelmCellFunctions.inc"

    void pullOutputs(Params& params, const Data& data) const;

private:
    struct Reach;
    static const Reach kLr;
    static const Reach kVsr;
    static const Reach kXsr;

    struct Bin;
    static const Bin kLrLte15;
    static const Bin kLrLte30;
    static const Bin kLrGt30;
    static const Bin kVsrLte30;
    static const Bin kVsrGt30;
    static const Bin kXsrLte30;
    static const Bin kXsrGt30;

    struct Processor;
    static const Processor kDspLrLte30;
    static const Processor kDspLrGt30;
    static const Processor kDspVsr;
    static const Processor kDspXsr;

    float rxPowerAvcc(const Reach& reach, Params& params, const Data& data) const;
    float rxPowerVccaux(const Reach& reach, Params& params, const Data& data) const;
    float rxPowerAvtt(const Bin& bin, Params& params, const Data& data) const;
    float rxPowerVccintGt(const Processor& processor, Params& params, const Data& data) const;

    struct BaudRange;
    bool isOff(const Reach& reach, Params& params, const Data& data) const;
    bool isOff(const Reach& reach, const BaudRange& range, Params& params, const Data& data) const;
};
