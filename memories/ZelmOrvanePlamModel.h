#pragma once

#include "framework/ZelmModelBlock.h"
#include "memories/ZelmOrvanePlamData.h"
#include "memories/ZelmOrvanePlamParams.h"

class ZELM_EXPORT ZelmOrvanePlamModel;
extern template class ZelmModelBlock<ZelmOrvanePlamModel, ZelmOrvanePlamParams, ZelmOrvanePlamData>;

/// Power of like large cascadable RAMs: what share of the cycles a memory reads, writes, stands by and sleeps, each
/// priced by the events it causes. Most inputs derive from others unless they are set.
class ZELM_EXPORT ZelmOrvanePlamModel final
    : public ZelmModelBlock<ZelmOrvanePlamModel, ZelmOrvanePlamParams, ZelmOrvanePlamData> {
public:
    static constexpr std::string_view name = "ZelmOrvanePlamModel";

#define ZELM_CELL_ROWS "memories/ZelmOrvanePlamCells.def"
#include "framework/ZelmCellFunctions.inc"

    void pullOutputs(Params& params, const Data& data) const;

private:
    struct Port;
    static const Port kPortA, kPortB;

    // What derived inputs hold unless they are set.
    std::string_view cascadedSoFar(Params& params, const Data& data) const;
    int cascadeLatency(Params& params, const Data& data) const;
    std::string_view eccOfMode(Params& params, const Data& data) const;
    int idleCycles(Params& params, const Data& data) const;
    static int portWidthFor(int dataWidth);
    float registersPerMemory(Params& params, const Data& data) const;

    float readClockCurrent(const Port& port, Params& params, const Data& data) const;
    float readRate(const Port& port, Params& params, const Data& data) const;
    float writeClockCurrent(const Port& port, Params& params, const Data& data) const;
    float writeRate(const Port& port, Params& params, const Data& data) const;

    float cascadeScale(Params& params, const Data& data) const;
    double clockAndVoltage(std::string_view rail, float volts, Params& params, const Data& data) const;
    float inputRegisterCurrent(const Port& port, Params& params, const Data& data) const;
    float standbyCurrent(std::string_view event, Params& params, const Data& data) const;
};
