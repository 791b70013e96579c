#include "framework/ZelmOrvaneSignalModel.h"

#include "framework/ZelmModelBlockImpl.h"

#include <cmath>

#define ZELM_MODEL ZelmOrvaneSignalModel
#define ZELM_CELL_ROWS "framework/ZelmOrvaneSignalCells.def"
#define ZELM_TABLE_ROWS "framework/ZelmOrvaneSignalTables.def"

struct ZelmOrvaneSignalModel::Sheet : zelm::Sheet<ZelmOrvaneSignalModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        SignalPower();
    }

    double computeNumNodesPerSignal() const
    {
        const double decades = RoutingComplexity() / 10.0f;
        return std::pow(10.0, decades) - 1.0;
    }

    float computeWireCapacitance() const
    {
        const float nodes = NumNodesPerSignal();
        const float count = static_cast<float>(SignalCount());
        const float perNode = findPerNodeCap(DriverType());
        return nodes * count * perNode;
    }

    float computeSignalPower() const
    {
        const float capacitance = WireCapacitance();
        const float vccint = Vccint();
        const float toggleRate = ToggleRate();
        const float clockFreq = ClockFreq();
        return capacitance * vccint * vccint * toggleRate * clockFreq * 0.5f;
    }
};

#include "framework/ZelmModelBodies.inc"
